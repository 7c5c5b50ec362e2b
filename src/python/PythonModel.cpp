#include "PythonModel.h"

#include <utility>

#include "geometry_arrays.h"
#include "given_model.h"
#include "python_values.h"

namespace velmora {

namespace {

namespace py = pybind11;

/// Passes through the work that it stops. It is no std::exception: those are taken for faults of files on the way.
struct WorkStopped {};

std::string numbered(const char* what, std::size_t number) {
    return std::string(what) + ' ' + std::to_string(number);
}

/// A patch of an array (N, M, 3), or of a list of sections (n, 3) each.
Patch patchOfObject(const py::handle& object, const std::string& what) {
    if (!py::isinstance<py::list>(object) && !py::isinstance<py::tuple>(object)) {
        return patchOf(py::cast<NumberArray>(object), what);
    }
    Patch patch;
    for (const py::handle section : object) {
        patch.push_back(pointsOf(py::cast<NumberArray>(section), what + ", " + numbered("section", patch.size() + 1)));
        if (patch.back().empty()) {
            throw py::value_error(what + ", " + numbered("section", patch.size()) + " has no points");
        }
    }
    if (patch.empty()) {
        throw py::value_error(what + " has no sections");
    }
    return patch;
}

std::unique_ptr<zBlock_fe> zoneOfTuple(const py::tuple& parts, const std::string& what) {
    auto zone = zoneOf(py::cast<NumberArray>(parts[1]), py::cast<IndexArray>(parts[2]), what);
    zone->title = py::cast<std::string>(parts[0]);
    for (const auto& [name, values] : py::cast<py::dict>(parts[3])) {
        addField(*zone, py::cast<std::string>(name), py::cast<NumberArray>(values));
    }
    return zone;
}

} // namespace

template <class Call>
auto PythonModel::stopping(Call call) {
    try {
        return call();
    } catch (...) {
        stop_ = std::current_exception();
        throw WorkStopped();
    }
}

PythonModel::PythonModel(const std::filesystem::path& folder, ViewSize size, py::object onMessage,
                         py::object onQuestion, py::object onProgress)
    : onMessage_(std::move(onMessage)), onQuestion_(std::move(onQuestion)), onProgress_(std::move(onProgress)),
      session_(*this, {folder, size, false}) {
    Listener listener;
    if (!onQuestion_.is_none()) {
        listener.answer = [this](const std::string& text) {
            return stopping([&] { return py::cast<bool>(py::bool_(onQuestion_(text))); });
        };
    }
    listener.progress = [this](double fraction) {
        stopping([&] {
            if (PyErr_CheckSignals() != 0) { // Ctrl-C
                throw py::error_already_set();
            }
            if (!onProgress_.is_none()) {
                onProgress_(fraction);
            }
        });
    };
    session_.listenTo(std::move(listener));
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

void PythonModel::print(const Json& event) {
    if (stop_) {
        return; // what is said on the way back is no news
    }
    const py::object value = pythonValue(event);
    events_.append(value);
    // Titles and the like are also told while an object ends, where no exception may pass: Python is not called then.
    if (event.at("event") == "message" && !onMessage_.is_none()) {
        stopping([&] { onMessage_(value); });
    }
}

py::list PythonModel::perform(const Work& work) {
    if (running_) {
        throw std::runtime_error("the model is at work: a function that it calls cannot give it more");
    }
    running_ = true;
    stop_ = nullptr;
    events_ = py::list();
    try {
        work(++number_);
    } catch (const WorkStopped&) {
        running_ = false;
        std::rethrow_exception(std::exchange(stop_, nullptr));
    } catch (...) {
        running_ = false;
        throw;
    }
    running_ = false;
    return std::exchange(events_, py::list());
}

py::list PythonModel::run(const std::vector<std::string>& words) {
    if (words.empty()) {
        throw py::value_error("a line has at least one word");
    }
    return perform([&](std::int64_t number) { return session_.run(number, words); });
}

py::dict PythonModel::commands() const {
    py::dict on;
    for (const Command& command : commandTable()) {
        on[command.id] = session_.session().isOn(command);
    }
    return on;
}

// ---- Geometry that goes in ------------------------------------------------------------------------------------------

py::list PythonModel::takeModel(PatchList&& patches, zRegion_fe&& region) {
    return perform([&](std::int64_t number) {
        return session_.run(number, [&](Session& session) -> MaybeFailure {
            takeGivenModel(session.document(), std::move(patches), std::move(region));
            return std::nullopt;
        });
    });
}

py::list PythonModel::takePatches(const py::list& patches) {
    PatchList list;
    for (const py::handle patch : patches) {
        list.push_back(patchOfObject(patch, numbered("patch", list.size() + 1)));
    }
    if (list.empty()) {
        throw py::value_error("there is no patch");
    }
    return takeModel(std::move(list), {});
}

py::list PythonModel::takeZones(const py::list& zones) {
    zRegion_fe region;
    for (const py::handle zone : zones) {
        region.blocks.push_back(zoneOfTuple(py::cast<py::tuple>(zone), numbered("zone", region.blocks.size() + 1)));
    }
    if (region.blocks.empty()) {
        throw py::value_error("there is no zone");
    }
    return takeModel({}, std::move(region));
}

// ---- Geometry that comes out ----------------------------------------------------------------------------------------

py::list PythonModel::keep(Kept& kept, const std::function<py::list()>& make) const {
    const std::uint64_t revision = document().geometryRevision();
    if (!kept.made || kept.revision != revision) {
        kept = {make(), revision};
    }
    return py::list(kept.made.attr("copy")()); // the list is the caller's own, the arrays are shared
}

py::list PythonModel::patches() {
    return keep(patches_, [this] {
        py::list arrays;
        for (const Patch& patch : document().patches) {
            arrays.append(patchArray(patch, arrays.size() + 1));
        }
        return arrays;
    });
}

py::list PythonModel::lines() {
    return keep(lines_, [this] {
        py::list arrays;
        for (const Patch& patch : document().patches) {
            arrays.append(sectionArrays(patch));
        }
        return arrays;
    });
}

py::list PythonModel::zones() {
    return keep(zones_, [this] {
        py::list tuples;
        for (const auto& zone : document().feRegion.blocks) {
            tuples.append(zoneArrays(*zone));
        }
        return tuples;
    });
}

py::array PythonModel::lineBuffer() const {
    return pointArray(document().lineBuffer);
}

} // namespace velmora
