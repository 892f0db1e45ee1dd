#include <array>
#include <string>
#include <string_view>

#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/objects.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters::numpy {

using catalogue::Calculation;
using catalogue::Kind;
using catalogue::Need;
using catalogue::Parameter;

namespace {

constexpr std::array<std::string_view, 8> kinds{"number", "whole", "date",    "date_time",
                                                "basis",  "flag",  "numbers", "dates"};

// Takes the value over; false, with Python's error set, where it could not be made or put in.
bool put(PyObject* entry, const char* key, const Owned& value) {
    return value && PyDict_SetItemString(entry, key, value.get()) == 0;
}

Owned parameter_entry(const Parameter& parameter) {
    Owned entry{PyDict_New()};
    const bool optional = parameter.need == Need::optional;
    if (!entry || !put(entry.get(), "name", python_text(parameter.name)) ||
        !put(entry.get(), "kind", python_text(catalogue::item_of<Kind::dates>(kinds, parameter.kind))) ||
        !put(entry.get(), "meaning", python_text(parameter.meaning)) ||
        !put(entry.get(), "optional", Owned{PyBool_FromLong(optional ? 1 : 0)})) {
        return {};
    }
    return entry;
}

Owned parameter_entries(const Calculation& calculation) {
    Owned entries{PyTuple_New(static_cast<Py_ssize_t>(calculation.parameters.size()))};
    if (!entries) return {};
    Py_ssize_t next = 0;
    for (const Parameter& parameter : calculation.parameters) {
        Owned entry = parameter_entry(parameter);
        if (!entry) return {};
        PyTuple_SET_ITEM(entries.get(), next++, entry.release());
    }
    return entries;
}

Owned pair(std::string_view first, std::string_view second) {
    const Owned one = python_text(first);
    const Owned two = python_text(second);
    return one && two ? Owned{PyTuple_Pack(2, one.get(), two.get())} : Owned{};
}

}  // namespace

Owned catalogue_entry(const Calculation& calculation) {
    Owned entry{PyDict_New()};
    if (!entry || !put(entry.get(), "name", python_text(calculation.name)) ||
        !put(entry.get(), "answers", python_text(calculation.answers)) ||
        !put(entry.get(), "documentation", python_text(documentation(calculation))) ||
        !put(entry.get(), "example", pair(calculation.example.arguments, calculation.example.result)) ||
        !put(entry.get(), "result", python_text(result_words(calculation.result))) ||
        !put(entry.get(), "parameters", parameter_entries(calculation))) {
        return {};
    }
    return entry;
}

const Calculation* calculation_named(PyObject* name) {
    const char* text = PyUnicode_AsUTF8(name);
    if (text == nullptr) return nullptr;
    const Calculation* calculation = catalogue::find(text);
    if (calculation == nullptr)
        PyErr_Format(PyExc_ValueError, "no calculation is called %s",
                     catalogue::shown(text, catalogue::most_quoted).c_str());
    return calculation;
}

}  // namespace finance::adapters::numpy
