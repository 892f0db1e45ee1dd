// _zelkovan: what the package zelkovan calls. No C++ exception leaves a function of it.
#include <algorithm>
#include <bit>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "abi/zelkovan.h"
#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/objects.hpp"
#include "adapters/numpy/rows.hpp"
#include "catalogue/text.hpp"
#include "catalogue/wording.hpp"

namespace finance::adapters::numpy {

using catalogue::Calculation;

namespace {

// ---- Words

// As the module looks a keyword up: without blanks, in any case.
PyObject* keyword_code(std::string_view text) {
    if (text.size() > ZELKOVAN_LONGEST_BASIS_TEXT) Py_RETURN_NONE;
    const auto found = std::ranges::find(catalogue::basis_keywords, catalogue::basis_name(text));
    if (found == catalogue::basis_keywords.end()) Py_RETURN_NONE;
    return PyFloat_FromDouble(static_cast<double>(found - catalogue::basis_keywords.begin()));
}

PyObject* basis_code(PyObject*, PyObject* word) {
    return guarded([&]() -> PyObject* {
        std::string_view text;
        if (!text_of(word, text)) return nullptr;
        const host::Argument basis = basis_argument(text);
        if (basis.kind() == host::Argument::Kind::number) return PyFloat_FromDouble(basis.number());
        return keyword_code(text);
    });
}

PyObject* host_date(PyObject*, PyObject* date) {
    return guarded([&]() -> PyObject* {
        std::string_view text;
        if (!text_of(date, text)) return nullptr;
        const auto day = catalogue::host_date(text);
        if (!day) Py_RETURN_NONE;
        return PyFloat_FromDouble(*day);
    });
}

PyObject* shown(PyObject*, PyObject* given) {
    return guarded([&]() -> PyObject* {
        std::string_view text;
        if (!text_of(given, text)) return nullptr;
        return python_text(catalogue::shown(text, catalogue::most_quoted)).release();
    });
}

// ---- What the loops have met

PyObject* outcome(PyObject*, PyObject*) {
    const Outcome met = take_outcome();
    return met.out_of_memory ? PyErr_NoMemory() : PyLong_FromUnsignedLongLong(met.refused);
}

// ---- Lists

// The arrays behind a call, held until it has ended.
struct Given {
    std::vector<std::unique_ptr<Buffer>> buffers{};
    std::vector<RowValues> parameters{};

    template <typename Number>
    bool open(PyObject* array, std::string_view formats, std::span<const Number>& numbers) {
        buffers.push_back(std::make_unique<Buffer>());
        if (!buffers.back()->open(array, formats, false)) return false;
        numbers = buffers.back()->numbers<const Number>();
        return true;
    }

    bool add(PyObject* given) {
        RowValues& row = parameters.emplace_back();
        if (!PyTuple_Check(given)) return open(given, "d", row.values);
        if (PyTuple_GET_SIZE(given) != 3) {
            PyErr_SetString(PyExc_TypeError, "a list is (values, starts, lengths)");
            return false;
        }
        return open(PyTuple_GET_ITEM(given, 0), "d", row.values) &&
               open(PyTuple_GET_ITEM(given, 1), "lq", row.starts) &&
               open(PyTuple_GET_ITEM(given, 2), "lq", row.lengths);
    }
};

// call_lists(NAME, (number array or (values, starts, lengths), ...), results) -> refused rows
PyObject* call_lists_of(PyObject*, PyObject* arguments) {
    PyObject* name = nullptr;
    PyObject* given = nullptr;
    PyObject* answers = nullptr;
    if (PyArg_ParseTuple(arguments, "UO!O", &name, &PyTuple_Type, &given, &answers) == 0) return nullptr;
    return guarded([&]() -> PyObject* {
        const Calculation* calculation = calculation_named(name);
        if (calculation == nullptr) return nullptr;
        Given rows;
        for (Py_ssize_t i = 0; i < PyTuple_GET_SIZE(given); ++i) {
            if (!rows.add(PyTuple_GET_ITEM(given, i))) return nullptr;
        }
        Buffer results;
        if (!results.open(answers, "d", true)) return nullptr;
        if (!fits(*calculation, rows.parameters, results.numbers<double>().size())) {
            PyErr_SetString(PyExc_ValueError, "arrays and rows do not fit together");
            return nullptr;
        }
        std::size_t refused = 0;
        std::exception_ptr fault{};
        Py_BEGIN_ALLOW_THREADS;
        try {
            refused = call_lists(*calculation, rows.parameters, results.numbers<double>());
        } catch (...) {
            fault = std::current_exception();
        }
        Py_END_ALLOW_THREADS;
        if (fault) std::rethrow_exception(fault);
        return PyLong_FromSize_t(refused);
    });
}

// ---- The module

PyMethodDef methods[] = {
    {"basis_code", basis_code, METH_O, "Code of a day-count basis's word, or the number that it is; None: unknown."},
    {"host_date", host_date, METH_O, "Days since 1960-01-01 of year-month-day; None where it is no date."},
    {"shown", shown, METH_O, "A text for a sentence: without control characters, cut where it is long."},
    {"outcome", outcome, METH_NOARGS, "How many rows the ufuncs of this thread have refused since the last time."},
    {"call_lists", call_lists_of, METH_VARARGS, "A calculation of lists, row by row; how many rows were refused."},
    {"refusal", refusal_of, METH_VARARGS, "Why a call is refused: sentence, position, parameter."},
    {nullptr, nullptr, 0, nullptr},
};

PyModuleDef definition{
    .m_base = PyModuleDef_HEAD_INIT,
    .m_name = "_zelkovan",
    .m_doc = "Calculations of zelkovan as ufuncs, and what the package needs around them.",
    .m_size = -1,
    .m_methods = methods,
    .m_slots = nullptr,
    .m_traverse = nullptr,
    .m_clear = nullptr,
    .m_free = nullptr,
};

Owned catalogue_of(PyObject* module) {
    Owned all{PyList_New(0)};
    for (const Calculation& calculation : catalogue::calculations()) {
        const Owned entry = catalogue_entry(calculation);
        const Owned ufuncs = make_ufuncs(module, calculation);
        if (!all || !entry || !ufuncs || PyDict_SetItemString(entry.get(), "ufuncs", ufuncs.get()) < 0 ||
            PyList_Append(all.get(), entry.get()) < 0) {
            return {};
        }
    }
    return all;
}

Owned basis_words() {
    Owned words{PyList_New(0)};
    for (const std::string_view keyword : catalogue::basis_keywords) {
        const Owned word = python_text(keyword);
        if (!words || !word || PyList_Append(words.get(), word.get()) < 0) return {};
    }
    return words;
}

bool put(const Owned& module, const char* name, const Owned& value) {
    return value && PyObject_SetAttrString(module.get(), name, value.get()) == 0;
}

PyObject* make_module() {
    if (!import_numpy()) return nullptr;
    Owned module{PyModule_Create(&definition)};
    if (!module) return nullptr;
    (void)shared_host();  // what cannot be loaded is said at the import
    const auto refused_bits = std::bit_cast<std::uint64_t>(refused_answer);
    if (!put(module, "calculations", catalogue_of(module.get())) || !put(module, "basis_words", basis_words()) ||
        !put(module, "version", python_text(ZELKOVAN_VERSION)) ||
        !put(module, "refused_bits", Owned{PyLong_FromUnsignedLongLong(refused_bits)})) {
        return nullptr;
    }
    return module.release();
}

}  // namespace

}  // namespace finance::adapters::numpy

// NOLINTNEXTLINE(bugprone-reserved-identifier): Python makes the name, PyInit_ and the module's
PyMODINIT_FUNC PyInit__zelkovan() {
    return finance::adapters::numpy::guarded([] { return finance::adapters::numpy::make_module(); });
}
