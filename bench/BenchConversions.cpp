#include "RatioReporter.h"
