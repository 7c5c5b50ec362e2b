#include "python_values.h"

#include <string>

namespace velmora {

namespace {

namespace py = pybind11;

py::object pythonText(const std::string& text) {
    PyObject* const decoded = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
    if (decoded == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::object>(decoded);
}

py::object pythonList(const Json& list) {
    py::list values(list.size());
    for (std::size_t i = 0; i < list.size(); ++i) {
        values[i] = pythonValue(list[i]);
    }
    return values;
}

py::object pythonDictionary(const Json& object) {
    py::dict values;
    for (const auto& [name, value] : object.items()) {
        values[pythonText(name)] = pythonValue(value);
    }
    return values;
}

} // namespace

py::object pythonValue(const Json& value) {
    switch (value.type()) {
    case Json::value_t::object:
        return pythonDictionary(value);
    case Json::value_t::array:
        return pythonList(value);
    case Json::value_t::string:
        return pythonText(value.get_ref<const std::string&>());
    case Json::value_t::boolean:
        return py::bool_(value.get<bool>());
    case Json::value_t::number_integer:
        return py::int_(value.get<std::int64_t>());
    case Json::value_t::number_unsigned:
        return py::int_(value.get<std::uint64_t>());
    case Json::value_t::number_float:
        return py::float_(value.get<double>());
    case Json::value_t::null:
    case Json::value_t::binary:
    case Json::value_t::discarded:
        break;
    }
    return py::none();
}

} // namespace velmora
