/* For the C libraries inside orvsys.dll: the memory functions, which string.h declares. */
#pragma once
#include <string.h>
