/* For expat: what its own configuration step would detect. The rest is set in cmake/Dependencies.cmake. */
#pragma once
#define BYTEORDER 1234
