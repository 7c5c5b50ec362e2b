#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include "PythonModel.h"
#include "about.h"
#include "command_help.h"
#include "documents_folder.h"
#include "kernel_functions.h"
#include "python_values.h"

// The compiled half of the package: what it declares is used by the package's Python sources, which users meet.

namespace {

namespace py = pybind11;
using velmora::PythonModel;

py::object helpOf(const std::string& id) {
    const velmora::Command* command = velmora::findCommand(id);
    return command == nullptr ? py::none() : velmora::pythonValue(velmora::commandHelp(*command));
}

void declareModel(py::module_& module) {
    using py::arg;
    py::class_<PythonModel>(module, "Model")
        .def(py::init([](const std::filesystem::path& folder, int width, int height, py::object onMessage,
                         py::object onQuestion, py::object onProgress) {
                 return std::make_unique<PythonModel>(folder, velmora::ViewSize{width, height}, std::move(onMessage),
                                                      std::move(onQuestion), std::move(onProgress));
             }),
             arg("folder"), arg("width"), arg("height"), arg("on_message"), arg("on_question"), arg("on_progress"))
        .def("run", &PythonModel::run, arg("words"))
        .def("take_patches", &PythonModel::takePatches, arg("patches"))
        .def("take_zones", &PythonModel::takeZones, arg("zones"))
        .def("patches", &PythonModel::patches)
        .def("lines", &PythonModel::lines)
        .def("zones", &PythonModel::zones)
        .def("line_buffer", &PythonModel::lineBuffer)
        .def("commands", &PythonModel::commands);
}

} // namespace

PYBIND11_MODULE(_core, module) {
    declareModel(module);
    velmora::declareKernels(module);
    module.def("help", &helpOf, py::arg("command"));
    module.def("documents_folder", [] { return velmora::documentsFolder(velmora::processEnvironment); });
    module.attr("version") = velmora::programVersion();
    module.attr("largest_pixel") = velmora::largestPixel;
}
