// The module _drawing: what needs the drawing library. It is loaded by the process that writes a
// report, see quorvane/_report.py.
#include <pybind11/stl/filesystem.h>

#include "base/files.h"
#include "core/report/report_file.h"
#include "plot/offscreen.h"
#include "plot/report_pages.h"
#include "python/fit_record.h"

namespace quorvane {

namespace {

void WriteReportOf(const py::bytes& bytes, const std::filesystem::path& path) {
  if (!ReportFormatOf(path)) throw py::value_error("a file name ending in .html or .pdf is wanted");
  try {
    const FitRecord record = UnpackFit(ViewOf(bytes));
    QuorvaneModule module;
    BeginAround(record, module);
    const OffscreenDrawing drawing;
    WriteReport(module, path, {{RenderReportChart, RenderReportFigure}, RenderReportPages});
  } catch (const FileFault& fault) {
    PyErr_SetString(PyExc_OSError, fault.what());
    throw py::error_already_set();
  }
}

}  // namespace

}  // namespace quorvane

PYBIND11_MODULE(_drawing, m) {
  m.def("write_report", quorvane::WriteReportOf);
}
