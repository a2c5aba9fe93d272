/* For expat: what its own configuration would have found. The rest stands in cmake/Dependencies.cmake. */
#pragma once
#define BYTEORDER 1234
