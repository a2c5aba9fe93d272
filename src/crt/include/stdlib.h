/* For the C libraries inside orvsys.dll: memory from the process heap, and an environment without variables,
   so that no number is ever read from one. */
#pragma once
#include <stddef.h>

void *malloc(size_t size);
void *realloc(void *block, size_t size);
void free(void *block);
#define getenv(name) ((char *)0)
#define strtoul(text, end, radix) 0ul
static int errno;
