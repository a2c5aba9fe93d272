/* For libbzip2, which uses one name of this header: WINAPI, the calling convention of its functions. It is
 * empty, so that they use our own convention. */
#pragma once
#define WINAPI
