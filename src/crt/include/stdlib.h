/* For the C libraries inside orvsys.dll: memory from the process heap, and an empty environment. */
#pragma once
#include <stddef.h>

void *malloc(size_t size);
void *realloc(void *block, size_t size);
void free(void *block);
#define getenv(name) ((char *)0)
