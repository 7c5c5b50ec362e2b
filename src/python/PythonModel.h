#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "BatchSession.h"
#include "DocumentState.h"

namespace velmora {

/// A model in the hands of a Python program: a batch session whose lines are calls and whose events are dictionaries,
/// so that a program finds the rules, texts and outcomes of scripts.
///
/// Functions of the program are called while a line runs; an exception of one of them stops the work at its next step,
/// the model is what it was before, and the exception goes on to the caller.
class PythonModel : private EventPrinter {
public:
    /// Untitled models go to `folder`. The functions may be None: `onMessage(dict)` hears each message as the event
    /// that it is, `onQuestion(text)` answers what a line does not, true for Yes, `onProgress(fraction)` hears of long
    /// work.
    PythonModel(const std::filesystem::path& folder, ViewSize size, pybind11::object onMessage,
                pybind11::object onQuestion, pybind11::object onProgress);

    /// Carries out the words of one line; its events.
    pybind11::list run(const std::vector<std::string>& words);
    /// Puts arrays (N, M, 3), or lists of arrays (n, 3), in the place of the model; its events.
    pybind11::list takePatches(const pybind11::list& patches);
    /// The same of tuples (title, vertices, triangles, fields).
    pybind11::list takeZones(const pybind11::list& zones);

    // The geometry as arrays that nothing changes any more. They are made once for each state of the model.

    pybind11::list patches();
    pybind11::list lines();
    pybind11::list zones();
    pybind11::array lineBuffer() const;

    /// {id: whether it is on}.
    pybind11::dict commands() const;

private:
    /// What was made of the geometry for one revision of it.
    struct Kept {
        pybind11::object made;
        std::uint64_t revision = 0;
    };
    using Work = std::function<BatchSession::Next(std::int64_t number)>;

    void print(const Json& event) override;
    pybind11::list perform(const Work& work);
    pybind11::list takeModel(PatchList&& patches, zRegion_fe&& region);
    const DocumentState& document() const { return session_.session().state(); }
    pybind11::list keep(Kept& kept, const std::function<pybind11::list()>& make) const;
    template <class Call>
    auto stopping(Call call);

    pybind11::object onMessage_;
    pybind11::object onQuestion_;
    pybind11::object onProgress_;
    pybind11::list events_;
    std::exception_ptr stop_; ///< what a function of the program raised
    bool running_ = false;
    std::int64_t number_ = 0;
    Kept patches_;
    Kept lines_;
    Kept zones_;
    BatchSession session_;
};

} // namespace velmora
