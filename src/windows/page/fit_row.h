// One row of the parameter page: the controls of a dataset of the fit.
#pragma once

#include <QString>
#include <array>
#include <vector>

#include "core/page/page_parts.h"
#include "core/page/row_values.h"

class QGridLayout;
class QLabel;
class QWidget;

namespace quorvane {

class ClickLabel;
class PageCheckBox;
class ValueBox;

// Columns of the table.
enum RowColumn {
  kNumberColumn,
  kNameColumn,
  kSpeedColumn,
  kLambdaColumn,
  kOffsetColumn,
  kOffsetCheckColumn,
  kRefConcColumn,
  kRefConcCheckColumn,
  kRefConc2Column,
  kRefConc2CheckColumn,
  kExtCoeffColumn,
  kExtCoeff2Column,
  kMeniscusColumn,  // or the load of A
  kBaseColumn,      // or the load of B
  kLinkColumn,
  kColumnCount
};

struct FitRow {
  ClickLabel* lblFitNum;
  QLabel* lblFitData;
  ValueBox* lblRunSpeed;
  QLabel* lblLambda;
  std::array<ValueBox*, RowValues.size()> boxes;  // in the order of RowValues
  PageCheckBox* chkOffset;
  PageCheckBox* chkRefC;
  PageCheckBox* chkRefC2;
  ValueBox* txtLinkTo;

  std::vector<QWidget*> All() const;         // all controls
  std::vector<QWidget*> InTabOrder() const;  // those that may take the focus, from left to right
};

// The controls of row `row` (from 0), in that row of `grid`.
FitRow MakeFitRow(QGridLayout& grid, int row);

// Shows and hides the controls by the parts of the page.
void ShowRowParts(const FitRow& controls, const PageParts& parts);

// Values, check boxes and links of row `row` into its controls.
void ShowRowValues(const FitRow& controls, QuorvaneModule& module, int row);

// The link of row `row`, and the reference concentrations that it disables.
void ShowRowLink(const FitRow& controls, const FitSetup& setup, int row);

}  // namespace quorvane
