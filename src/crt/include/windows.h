/* For libbzip2, which wants one word of this header: the calling convention of its functions, which is our
 * own. */
#pragma once
#define WINAPI
