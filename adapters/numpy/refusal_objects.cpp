#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/objects.hpp"
#include "adapters/numpy/rows.hpp"
#include "calls/answer.hpp"
#include "calls/lists.hpp"
#include "calls/meant.hpp"
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

// (sentence, position, argument, element): as help counts, a list as one; None where there is none.
PyObject* described(const Calculation& calculation, const std::string& sentence, int position, std::size_t values) {
    const Owned text = python_text(sentence);
    if (!text) return nullptr;
    const auto at = static_cast<std::size_t>(std::max(position, 0));
    const catalogue::Place place = catalogue::place_of(calculation, at, values);
    if (position < 1 || place.parameter >= calculation.parameters.size())
        return Py_BuildValue("OOOO", text.get(), Py_None, Py_None, Py_None);
    const Owned name = python_text(calculation.parameters[place.parameter].name);
    if (!name) return nullptr;
    const auto parameter = static_cast<Py_ssize_t>(place.parameter) + 1;
    if (place.element == 0) return Py_BuildValue("OnOO", text.get(), parameter, name.get(), Py_None);
    return Py_BuildValue("OnOn", text.get(), parameter, name.get(), static_cast<Py_ssize_t>(place.element));
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
        const auto sizes = [&](std::size_t i) { return one.lists[i].size(); };
        if (const auto lists = calls::unpaired(*calculation, one.lists.size(), sizes)) {
            return described(*calculation, calls::named_pairing_words(*calculation, *lists), 0, 0);
        }
        const auto unrolled = calls::unrolled(*calculation, one.scalars, one.lists);
        const host::Evaluation evaluation = calls::evaluate(shared_host(), *calculation, unrolled);
        const calls::Answer answer = calls::answer_of(shared_host(), *calculation, unrolled, evaluation);
        const bool missing = evaluation.answered() && answer.verdict() == calls::Verdict::missing;
        const bool refused = answer.verdict() != calls::Verdict::answered && !missing;
        const std::string sentence = refused ? answer.named_sentence() : "";
        return described(*calculation, sentence, answer.position(), unrolled.size());
    });
}

}  // namespace finance::adapters::numpy
