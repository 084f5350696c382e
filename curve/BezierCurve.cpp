#include "curve/BezierCurve.h"
