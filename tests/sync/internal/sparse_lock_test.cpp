#include "harness/test.h"
