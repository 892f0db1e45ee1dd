#include "adapters/numpy/refusal_objects.hpp"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/catalogue_objects.hpp"
#include "adapters/numpy/list_rows.hpp"
#include "catalogue/diagnosis.hpp"
#include "catalogue/layout.hpp"

namespace finance::adapters::numpy {

using catalogue::Calculation;

namespace {

struct OneCall {
    std::vector<std::unique_ptr<Buffer>> buffers{};
    std::vector<host::Argument> scalars{};
    std::vector<std::span<const double>> lists{};

    bool add(PyObject* given) {
        host::Argument& scalar = scalars.emplace_back(host::Argument::absent());
        std::span<const double>& list = lists.emplace_back();
        if (PyUnicode_Check(given)) {
            std::string_view text;
            if (!text_of(given, text)) return false;
            scalar = basis_argument(text);
            return true;
        }
        if (PyFloat_Check(given)) {
            scalar = PyFloat_AsDouble(given);
            return true;
        }
        buffers.push_back(std::make_unique<Buffer>());
        if (!buffers.back()->open(given, "d", false)) return false;
        list = buffers.back()->numbers<const double>();
        return true;
    }
};

catalogue::Given as_given(const host::Argument& argument) {
    if (argument.kind() == host::Argument::Kind::text) return argument.text();
    return argument.number();
}

// The argument at fault; 0 where there is none.
int fault_of(const Calculation& calculation, std::span<const host::Argument> arguments) {
    std::vector<catalogue::Given> values(arguments.size());
    std::ranges::transform(arguments, values.begin(), as_given);
    return argument_at_fault(calculation, values, shared_host().evaluate(calculation.name, arguments).flagged);
}

PyObject* described(const Calculation& calculation, const std::string& sentence, int position, std::size_t values) {
    const Owned text = python_text(sentence);
    if (!text) return nullptr;
    const auto at = static_cast<std::size_t>(std::max(position, 0));
    const std::size_t index = catalogue::place_of(calculation, at, values).parameter;
    if (position < 1 || index >= calculation.parameters.size())
        return Py_BuildValue("OOO", text.get(), Py_None, Py_None);
    const Owned name = python_text(calculation.parameters[index].name);
    return name ? Py_BuildValue("OiO", text.get(), position, name.get()) : nullptr;
}

}  // namespace

PyObject* refusal_of(PyObject* /*module*/, PyObject* arguments) {
    PyObject* name = nullptr;
    PyObject* given = nullptr;
    if (PyArg_ParseTuple(arguments, "UO!", &name, &PyTuple_Type, &given) == 0) return nullptr;
    return guarded([&]() -> PyObject* {
        const Calculation* calculation = calculation_named(name);
        if (calculation == nullptr) return nullptr;
        OneCall one;
        for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(given); ++i) {
            if (!one.add(PyTuple_GET_ITEM(given, i))) return nullptr;
        }
        if (one.scalars.size() > calculation->parameters.size()) {
            PyErr_SetString(PyExc_TypeError, "too many arguments");
            return nullptr;
        }
        const std::string unpaired = pairing_fault(*calculation, one.lists);
        if (!unpaired.empty()) return described(*calculation, unpaired, 0, 0);
        const auto unrolled_arguments = unrolled(*calculation, one.scalars, one.lists);
        const Answer answer = call(*calculation, unrolled_arguments);
        return described(*calculation, answer.refusal, fault_of(*calculation, unrolled_arguments),
                         unrolled_arguments.size());
    });
}

}  // namespace finance::adapters::numpy
