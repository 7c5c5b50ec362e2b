#pragma once

#include "VelmoraDoc.h"
#include "state_fixture.h"

namespace velmora::test {

/// The same tests with the whole document, for what its methods do beyond the commands.
template <class Fixture>
class WithDocument : public Fixture {
protected:
    VelmoraDoc& doc = *Fixture::document_;
};

using DocumentTest = WithDocument<StateTest>;

} // namespace velmora::test
