// Python's objects as C++ values that give themselves back, and what the module hands to Python.
#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <cstddef>
#include <exception>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "catalogue/catalogue.hpp"

namespace finance::adapters::numpy {

// A reference of ours; null where the making failed, and then Python's error is set.
class Owned {
public:
    Owned() = default;
    explicit Owned(PyObject* object) : object_{object} {}
    ~Owned() { Py_XDECREF(object_); }
    Owned(Owned&& other) noexcept : object_{std::exchange(other.object_, nullptr)} {}
    Owned& operator=(Owned&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    [[nodiscard]] PyObject* get() const { return object_; }
    [[nodiscard]] PyObject* release() { return std::exchange(object_, nullptr); }
    explicit operator bool() const { return object_ != nullptr; }

private:
    PyObject* object_ = nullptr;
};

// What does not read as UTF-8 is shown as the sign for that.
inline Owned python_text(std::string_view text) {
    return Owned{PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace")};
}

// False, with Python's error set, where it is no text or cannot be written as UTF-8. Lives as long as the object.
inline bool text_of(PyObject* object, std::string_view& text) {
    Py_ssize_t size = 0;
    const char* characters = PyUnicode_AsUTF8AndSize(object, &size);
    if (characters == nullptr) return false;
    text = {characters, static_cast<std::size_t>(size)};
    return true;
}

// No C++ exception goes on into Python.
template <typename Body>
PyObject* guarded(Body body) {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return PyErr_NoMemory();
    } catch (const std::exception& e) {
        PyErr_SetString(PyExc_ValueError, e.what());
    }
    return nullptr;
}

// Numbers of an array, in place: one dimension or more, without gaps. Nothing, with Python's error set, for all else.
class Buffer {
public:
    Buffer() = default;
    ~Buffer() { PyBuffer_Release(&view_); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    // formats: letters of the struct module, any of which will do.
    bool open(PyObject* object, std::string_view formats, bool writable) {
        const int flags = PyBUF_C_CONTIGUOUS | PyBUF_FORMAT | (writable ? PyBUF_WRITABLE : 0);
        if (PyObject_GetBuffer(object, &view_, flags) < 0) return false;
        const std::string_view format = view_.format == nullptr ? "B" : view_.format;
        if (view_.itemsize == sizeof(double) && format.size() == 1 && formats.find(format) != std::string_view::npos) {
            return true;
        }
        PyErr_SetString(PyExc_TypeError, "an array of another type was expected");
        return false;
    }

    template <typename Number>
    [[nodiscard]] std::span<Number> numbers() const {
        return {static_cast<Number*>(view_.buf), static_cast<std::size_t>(view_.len) / sizeof(Number)};
    }

private:
    Py_buffer view_{};
};

// ---- What the module hands to Python

// {"name": "PRICE", "answers": ..., "documentation": ..., "example": (arguments, result), "result": "rate",
//  "parameters": ({"name": "settlement", "kind": "date", "meaning": ..., "optional": False}, ...)}
Owned catalogue_entry(const catalogue::Calculation& calculation);

// Null, with Python's error set, where there is none of that name.
const catalogue::Calculation* calculation_named(PyObject* name);

// Before all else; false with Python's error set.
bool import_numpy();

// Raw ufuncs, one for each number of arguments, all of float64: {6: price_6, 7: price_7}. Each is put into the module by
// its name too, so that it can be pickled.
Owned make_ufuncs(PyObject* module, const catalogue::Calculation& calculation);

// refusal(NAME, (float, text or float64 array, ...)) -> (sentence, position or None, parameter's name or None)
PyObject* refusal_of(PyObject* module, PyObject* arguments);

}  // namespace finance::adapters::numpy
