"""Commands, answers, reports and refusals."""

import signal

import pytest

import velmora
from conftest import apt_patches, plate


def test_a_file_that_is_opened_is_the_model(examples):
    model = velmora.open(examples / "wing.apt")
    expected = apt_patches(examples / "wing.apt")
    assert [patch.shape for patch in model.patches] == [patch.shape for patch in expected]
    assert all((ours == theirs).all() for ours, theirs in zip(model.patches, expected))
    assert model.state["documentTitle"] == "wing.apt"


def test_a_command_takes_its_fields_and_reports_the_dialog(plate_model):
    plate_model.run("line.inputSection", patch=1, section=2)
    report = plate_model.run("line.rebreak", regime=2, newCount=9)
    assert report.outcome == "ok"
    assert [dialog["name"] for dialog in report.dialogs] == ["CRebreak"]
    assert report.dialogs[0]["fields"]["newCount"] == 9
    assert plate_model.patches[0].shape == (4, 9, 3)


def test_a_command_that_is_off_or_unknown_fails_with_the_text_of_the_script(plate_model):
    with pytest.raises(velmora.LineFailed, match='the command "line.rebreak" is off') as failure:
        plate_model.run("line.rebreak", newCount=9)
    assert failure.value.report.outcome == "error"
    with pytest.raises(velmora.LineFailed, match='there is no command "line.unknown"'):
        plate_model.run("line.unknown")


def test_a_field_out_of_its_range_fails_and_changes_nothing(plate_model):
    plate_model.run("line.inputSection", patch=1, section=1)
    with pytest.raises(velmora.LineFailed, match="newCount=1"):
        plate_model.run("line.rebreak", newCount=1)
    assert plate_model.patches[0].shape == (4, 5, 3)


def test_a_file_that_is_not_there_fails_and_the_model_stays(plate_model):
    with pytest.raises(velmora.FileFailed, match="impossible to open") as failure:
        plate_model.open("absent.apt")
    assert failure.value.report.outcome == "failed"
    assert (plate_model.patches[0] == plate(4, 5)).all()
    with pytest.raises(velmora.FileFailed):
        velmora.open("absent.apt")


def test_a_type_that_open_does_not_take_is_refused(plate_model, own_folder):
    (own_folder / "points.apm").write_text("0 0 0\n")
    with pytest.raises(velmora.Refused, match="not supported"):
        plate_model.open("points.apm")


FACET = """facet normal 0 0 1
outer loop
vertex 0 0 0
vertex 1 0 0
vertex 0 1 {}
endloop
endfacet
"""


def test_a_file_that_is_not_whole_is_partial_and_no_exception(own_folder):
    (own_folder / "broken.stl").write_text("solid s\n" + FACET.format("0") + FACET.format("zero") + "endsolid s\n")
    model = velmora.Model()
    report = model.open("broken.stl")
    assert report.outcome == "partial"
    assert report.read[0]["kept"]["facets"] == 1 and report.read[0]["reasons"]
    assert len(model.zones[0].triangles) == 1


def test_questions_are_answered_by_the_call_or_by_the_function_else_the_line_fails(tmp_path, examples):
    wing = examples / "wing.apt"
    model = velmora.open(wing, folder=tmp_path)
    with pytest.raises(velmora.LineFailed, match="has no answer"):
        model.run("file.open", file=wing)
    report = model.run("file.open", file=wing, answer=True)
    assert report.questions == [velmora.Question("Current geometry will be removed. Are you sure", True)]

    asked = []

    def answer(text):
        asked.append(text)
        return False

    model = velmora.open(wing, folder=tmp_path, on_question=answer)
    assert model.run("file.open").outcome == "cancelled"
    assert asked == ["Current geometry will be removed. Are you sure"]


def test_the_answer_of_the_call_comes_before_that_of_the_function(examples):
    model = velmora.open(examples / "wing.apt", on_question=lambda text: pytest.fail("was asked"))
    assert model.run("file.open", file=examples / "body.apt", answer="yes").outcome == "ok"


def test_what_the_call_gives_and_nothing_asks_for_fails(plate_model):
    with pytest.raises(velmora.LineFailed, match="nothing asked for"):
        plate_model.run("view.fit", answer=True)


def test_messages_are_heard_as_they_come_and_stand_in_the_report(tmp_path):
    heard = []
    model = velmora.Model(folder=tmp_path, on_message=heard.append)
    with pytest.raises(velmora.FileFailed) as failure:
        model.open("absent.apt")
    assert heard == failure.value.report.messages
    assert heard[0].severity == "error"


def test_an_exception_of_a_function_comes_to_the_caller_and_the_model_is_usable_afterwards(tmp_path):
    class Fault(Exception):
        pass

    def hear(message):
        raise Fault(message.text)

    model = velmora.Model(folder=tmp_path, on_message=hear)
    with pytest.raises(Fault, match="impossible to open"):
        model.open("absent.apt")
    model.on_message = None
    model.set_patches([plate(2, 2)])
    assert model.patches[0].shape == (2, 2, 3)


def test_a_function_that_is_called_cannot_give_the_model_work(tmp_path):
    model = velmora.Model(folder=tmp_path)
    model.on_message = lambda message: model.run("view.fit")
    with pytest.raises(RuntimeError, match="at work"):
        model.open("absent.apt")
    model.on_message = None
    model.set_patches([plate(2, 2)])
    assert model.run("view.fit").outcome == "ok"


def test_progress_is_told_rising_and_false_stops_the_work_with_the_model_as_before(examples):
    told = []
    model = velmora.open(examples / "c172_wing.stl")
    model.on_progress = told.append
    fields = dict(number=25, planeAxis=3, borderApproach=2, yourMin=0.01, yourMax=5.2)
    model.run("convert.toSkl", **fields)
    assert told and told == sorted(told) and 0.0 <= told[0] and told[-1] <= 1.0
    assert model.state["structureKind"] == "str"

    model = velmora.open(examples / "c172_wing.stl")
    before = model.zones[0]
    model.on_progress = lambda fraction: False
    with pytest.raises(velmora.Stopped):
        model.run("convert.toSkl", **fields)
    assert model.state["structureKind"] == "uns"
    assert (model.zones[0].vertices == before.vertices).all()
    assert (model.zones[0].triangles == before.triangles).all()
    model.on_progress = None
    assert model.run("convert.toSkl", **fields).outcome == "ok"


def test_ctrl_c_stops_long_work_with_the_model_as_before(examples):
    model = velmora.open(examples / "c172_wing.stl")
    model.on_progress = lambda fraction: signal.raise_signal(signal.SIGINT)
    with pytest.raises(KeyboardInterrupt):
        model.run("convert.toSkl", number=25, planeAxis=3, borderApproach=2, yourMin=0.01, yourMax=5.2)
    assert model.state["structureKind"] == "uns" and len(model.zones[0].triangles) == 3610


def test_reading_a_file_can_be_stopped_too(examples, tmp_path):
    model = velmora.Model(folder=tmp_path, on_progress=lambda fraction: False)
    with pytest.raises(velmora.Stopped):
        model.open(examples / "c172_wing.stl")
    assert model.state["structureKind"] == "non"


def test_commands_tell_which_are_on(plate_model):
    assert plate_model.commands["line.rebreak"] is False
    plate_model.run("line.inputSection", patch=1, section=1)
    assert plate_model.commands["line.rebreak"] is True


def test_help_tells_fields_with_ranges_and_starts():
    told = velmora.command_help("line.rebreak")
    assert told["dialog"] == "CRebreak"
    count = next(each for each in told["fields"] if each["name"] == "newCount")
    assert count["kind"] == "integer" and count["minimum"] == 2
    with pytest.raises(KeyError):
        velmora.command_help("line.unknown")


def test_any_line_of_a_script_runs(plate_model):
    assert plate_model.line("print", "version").values[0]["program"] == velmora.__version__
    with pytest.raises(velmora.LineFailed, match="there is no line"):
        plate_model.line("unknown")
    with pytest.raises(ValueError):
        plate_model.line()


def test_measure_and_report(plate_model):
    measured = plate_model.measure("1/1/1", "1/1/4")
    assert measured["distance"] == 3.0 and measured["delta"] == [3.0, 0.0, 0.0]
    report = plate_model.report()
    assert report["area"] == 12.0 and report["points"] == 20 and report["cells"] == 12


def test_save_as_writes_what_the_arrays_say(plate_model, own_folder):
    plate_model.save_as("plate.apt")
    assert (apt_patches("plate.apt")[0] == plate(4, 5)).all()
    other = velmora.Model()
    other.set_patches([plate(2, 3)])
    with pytest.raises(velmora.LineFailed, match="Overwrite it"):
        other.save_as("plate.apt")
    assert other.save_as("plate.apt", overwrite=True).written[0]["counts"] == {"patches": 1, "points": 6}


def test_two_models_know_nothing_of_each_other(examples, plate_model):
    wing = velmora.open(examples / "wing.apt")
    wing.run("line.inputSection", patch=1, section=1)
    assert plate_model.commands["line.rebreak"] is False
    assert (plate_model.patches[0] == plate(4, 5)).all()


def test_a_view_without_a_size_is_refused():
    with pytest.raises(ValueError):
        velmora.Model(size=(0, 600))


def test_a_file_is_read_by_a_library_of_others(own_folder):
    model = velmora.Model()
    model.set_patches([plate(3, 4)])
    report = model.run("file.export", file="plate.cgns")
    if report.messages and "cannot be saved" in report.messages[0].text:
        pytest.skip("built without the library for CGNS")
    other = velmora.Model()
    other.run("file.import", file="plate.cgns")
    assert (other.patches[0] == plate(3, 4)).all()
