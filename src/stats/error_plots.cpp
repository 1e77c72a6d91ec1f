#include "stats/error_plots.h"
