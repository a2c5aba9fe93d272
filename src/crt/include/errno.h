/* For the C libraries inside orvsys.dll: nothing of theirs that is built sets it. */
#pragma once
static int errno;
