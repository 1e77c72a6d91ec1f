#include "python/convert.h"

#include <cmath>

namespace quorvane {

namespace {

constexpr int kDeepest = 8;

toml::table TableOf(const py::dict& values, int depth);
toml::array ListOf(const py::sequence& values, int depth);

// Hands the value to `put`, as what TOML has for it.
template <class Put>
void PutValue(const py::handle& value, int depth, Put&& put) {
  if (PyBool_Check(value.ptr()) != 0) {
    put(value.cast<bool>());
  } else if (PyLong_Check(value.ptr()) != 0) {
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
    if (overflow != 0) throw py::value_error("a whole number is beyond 64 bits");
    put(static_cast<std::int64_t>(number));
  } else if (PyFloat_Check(value.ptr()) != 0) {
    put(value.cast<double>());
  } else if (PyUnicode_Check(value.ptr()) != 0) {
    put(value.cast<std::string>());
  } else if (PyDict_Check(value.ptr()) != 0) {
    put(TableOf(py::reinterpret_borrow<py::dict>(value), depth + 1));
  } else if (PyList_Check(value.ptr()) != 0 || PyTuple_Check(value.ptr()) != 0) {
    put(ListOf(py::reinterpret_borrow<py::sequence>(value), depth + 1));
  } else {
    throw py::type_error("a text, a number, a list or a dict is wanted, not " +
                         std::string(Py_TYPE(value.ptr())->tp_name));
  }
}

void CheckDepth(int depth) {
  if (depth > kDeepest) throw py::value_error("lists and dicts are nested too deep");
}

toml::table TableOf(const py::dict& values, int depth) {
  CheckDepth(depth);
  toml::table table;
  for (const auto& [key, value] : values) {
    if (PyUnicode_Check(key.ptr()) == 0) throw py::type_error("the keys of a dict are texts");
    const auto name = key.cast<std::string>();
    PutValue(value, depth, [&](auto&& node) {
      table.insert_or_assign(name, std::forward<decltype(node)>(node));
    });
  }
  return table;
}

toml::array ListOf(const py::sequence& values, int depth) {
  CheckDepth(depth);
  toml::array list;
  for (const py::handle value : values) {
    PutValue(value, depth,
             [&](auto&& node) { list.push_back(std::forward<decltype(node)>(node)); });
  }
  return list;
}

}  // namespace

TomlFile TomlOf(const py::dict& values, const std::string& name) {
  return {name, TableOf(values, 0)};
}

py::object ObjectOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::boolean:
      return py::bool_(value.get<bool>());
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
      return py::int_(value.get<std::int64_t>());
    case Json::value_t::number_float:
      return py::float_(value.get<double>());
    case Json::value_t::string:
      return py::str(value.get_ref<const std::string&>());
    case Json::value_t::array: {
      py::list list;
      for (const Json& element : value) list.append(ObjectOf(element));
      return list;
    }
    case Json::value_t::object: {
      py::dict dict;
      for (const auto& [key, member] : value.items()) dict[py::str(key)] = ObjectOf(member);
      return dict;
    }
    default:
      return py::none();
  }
}

DoubleArray ArrayOf(std::span<const double> values) {
  return DoubleArray(static_cast<py::ssize_t>(values.size()), values.data());
}

std::vector<double> NumbersOf(const DoubleArray& array, const char* what) {
  if (array.ndim() != 1) {
    throw py::value_error(std::string(what) + ": an array of one dimension is wanted");
  }
  std::vector<double> values(array.data(), array.data() + array.size());
  for (const double value : values) {
    if (!std::isfinite(value)) throw py::value_error(std::string(what) + ": not a finite number");
  }
  return values;
}

std::string_view ViewOf(const py::bytes& bytes) {
  return {PyBytes_AS_STRING(bytes.ptr()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr()))};
}

}  // namespace quorvane
