/* For the C libraries inside orvsys.dll. */
#pragma once
#include <string.h>
