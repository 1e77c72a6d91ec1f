// Grids on pages: a title on top, headers on every page, wide grids side by side on several pages.
#pragma once

#include "windows/print/print_job.h"
#include "windows/session/printable.h"

namespace quorvane {

struct GridPrintOptions {
  int scale = 100;        // percent of the natural size of the text, 10 to 400
  bool fitWidth = false;  // at most as large as `scale`, and all columns on one page
  int fromPage = 1;       // first and last page that are painted
  int toPage = 100000;
};

// Cells keep their colours, texts and alignment; the page itself is white. Pages go down the rows,
// then on to the next columns. A column wider than the page is cut off there.
PrintJob GridJob(const PrintedGrid& grid, const GridPrintOptions& options);

// How many pages the whole grid takes on `device`; at least 1.
int CountGridPages(const PrintedGrid& grid, const GridPrintOptions& options,
                   const QPagedPaintDevice& device);

}  // namespace quorvane
