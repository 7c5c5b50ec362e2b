"""Types that the package's functions share."""

from typing import Any, Dict, Union

import numpy as np
import numpy.typing as npt

#: An array of float64.
Floats = npt.NDArray[np.float64]
#: An array of int32.
Indices = npt.NDArray[np.int32]
#: What a line of a script says of a step, as a dictionary whose member "event" names its kind.
Event = Dict[str, Any]
#: What a field of a dialog takes.
FieldValue = Union[bool, int, float, str]
