// Values of Python and of the engine into each other.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <filesystem>
#include <span>
#include <vector>

#include "job/json_text.h"
#include "job/toml_reader.h"

namespace quorvane {

namespace py = pybind11;

using DoubleArray = py::array_t<double, py::array::c_style | py::array::forcecast>;

// A dict of texts, truth values, whole numbers, numbers, and of lists and dicts of these, as the
// table of a job; `name` is for messages. Throws py::type_error for anything else, py::value_error
// for what is nested more than 8 deep and for a whole number beyond 64 bits.
TomlFile TomlOf(const py::dict& values, const std::string& name);

// A JSON value as None, bool, int, float, str, list and dict; numbers bit by bit.
py::object ObjectOf(const Json& value);

// A new array of its own.
DoubleArray ArrayOf(std::span<const double> values);

// An array of one dimension as finite numbers. Throws py::value_error, naming `what`, for any other
// shape and for what is not finite.
std::vector<double> NumbersOf(const DoubleArray& array, const char* what);

// The text of a bytes object, as the pickles hold it.
std::string_view ViewOf(const py::bytes& bytes);

}  // namespace quorvane
