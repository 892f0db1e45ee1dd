#include <numpy/ndarraytypes.h>
#include <numpy/ufuncobject.h>

#include <array>
#include <deque>
#include <string>
#include <vector>

#include "adapters/common/engine_call.hpp"
#include "adapters/numpy/objects.hpp"
#include "adapters/numpy/rows.hpp"
#include "catalogue/text.hpp"

namespace finance::adapters::numpy {

namespace {

static_assert(sizeof(npy_intp) == sizeof(std::ptrdiff_t));

void loop(char** places, const npy_intp* dimensions, const npy_intp* steps, void* function) {
    call_run(*static_cast<const Function*>(function), places, static_cast<std::size_t>(dimensions[0]), steps);
}

// Everything that a ufunc points to; lives as long as the process.
struct Raw {
    Function function{};
    std::string name{};
    std::string text{};
    std::vector<char> types{};
    std::array<PyUFuncGenericFunction, 1> loops{loop};
    std::array<void*, 1> data{};
};

Raw& make_raw(const catalogue::Calculation& calculation, std::size_t arguments) {
    static std::deque<Raw> all;
    Raw& raw = all.emplace_back();
    raw.function = {&calculation, arguments};
    raw.name = catalogue::lower_case(calculation.name) + '_' + std::to_string(arguments);
    raw.text = std::string{calculation.answers} +
               ".\n\nDates are days since 1960-01-01, a basis is its code. NaN where a "
               "value is missing, where there is no answer, and where the call is refused.";
    raw.types.assign(arguments + 1, static_cast<char>(NPY_DOUBLE));
    raw.data = {&raw.function};
    return raw;
}

Owned make_ufunc(Raw& raw) {
    return Owned{PyUFunc_FromFuncAndData(raw.loops.data(), raw.data.data(), raw.types.data(), 1,
                                         static_cast<int>(raw.function.arguments), 1, PyUFunc_None, raw.name.c_str(),
                                         raw.text.c_str(), 0)};
}

}  // namespace

bool import_numpy() { return _import_umath() >= 0; }

Owned make_ufuncs(PyObject* module, const catalogue::Calculation& calculation) {
    Owned ufuncs{PyDict_New()};
    if (!ufuncs || !is_scalar(calculation)) return ufuncs;
    for (std::size_t n = fewest_parameters(calculation); n <= calculation.parameters.size(); ++n) {
        Raw& raw = make_raw(calculation, n);
        const Owned ufunc = make_ufunc(raw);
        const Owned count{PyLong_FromSize_t(n)};
        if (!ufunc || !count || PyDict_SetItem(ufuncs.get(), count.get(), ufunc.get()) < 0 ||
            PyObject_SetAttrString(module, raw.name.c_str(), ufunc.get()) < 0) {
            return {};
        }
    }
    return ufuncs;
}

}  // namespace finance::adapters::numpy
