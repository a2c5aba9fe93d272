/* For the C libraries inside orvsys.dll: memory from the process heap, random bytes, and an empty
   environment, so that no setting is ever read from a variable. */
#pragma once
#include <errno.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif
void *malloc(size_t size);
void *realloc(void *block, size_t size);
void free(void *block);
void arc4random_buf(void *bytes, size_t size);
#ifdef __cplusplus
}
#endif
#define getenv(name) ((char *)0)
#define strtoul(text, end, radix) 0ul
