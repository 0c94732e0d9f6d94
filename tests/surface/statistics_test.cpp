#include "surface/statistics.h"
