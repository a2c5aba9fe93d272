// The names of result codes, for logs and messages.
//
// They are compiled into the program that includes this file: the DLL has no texts about its results. The
// compiler warns about an enumerator without a line here (-Wswitch).

#pragma once

#include "orv/runtime/result.h"

/// One enumerator and its name; undefined again at the end of this file.
#define ORV_RESULT_NAME(code)                                                                                \
    case code:                                                                                               \
        return L## #code

/// The name of the enumerator of OrvResultCode with this value, such as L"ORV_E_ACCESS_DENIED"; null when
/// none has it. The format engine prints null as "(null)".
inline const wchar_t *OrvGetResultName(OrvResult result)
{
    switch (static_cast<OrvResultCode>(result)) {
        ORV_RESULT_NAME(ORV_S_OK);
        ORV_RESULT_NAME(ORV_E_OUT_OF_MEMORY);
        ORV_RESULT_NAME(ORV_E_INVALID_ARGUMENT);
        ORV_RESULT_NAME(ORV_E_FIELD_OUT_OF_RANGE);
        ORV_RESULT_NAME(ORV_E_NOT_OWNER);
        ORV_RESULT_NAME(ORV_E_KEY_NOT_FOUND);
        ORV_RESULT_NAME(ORV_E_VALUE_TYPE);
        ORV_RESULT_NAME(ORV_E_NOT_PRODUCED);
        ORV_RESULT_NAME(ORV_E_GUID_TEXT);
        ORV_RESULT_NAME(ORV_E_VIEW_ROOT);
        ORV_RESULT_NAME(ORV_E_VIEW_NOT_SUPPORTED);
        ORV_RESULT_NAME(ORV_E_NOT_PROVIDED);
        ORV_RESULT_NAME(ORV_E_FILE_NOT_FOUND);
        ORV_RESULT_NAME(ORV_E_PATH_NOT_FOUND);
        ORV_RESULT_NAME(ORV_E_INVALID_HANDLE);
        ORV_RESULT_NAME(ORV_E_EMPTY);
        ORV_RESULT_NAME(ORV_E_NOT_EMPTY);
        ORV_RESULT_NAME(ORV_E_READ_FAULT);
        ORV_RESULT_NAME(ORV_E_WRITE_FAULT);
        ORV_RESULT_NAME(ORV_E_BUFFER_TOO_SMALL);
        ORV_RESULT_NAME(ORV_E_INVALID_DATA);
        ORV_RESULT_NAME(ORV_E_NO_MORE_FILES);
        ORV_RESULT_NAME(ORV_E_DUPLICATE_NAME);
        ORV_RESULT_NAME(ORV_E_UNSUPPORTED_TYPE);
        ORV_RESULT_NAME(ORV_E_BAD_LENGTH);
        ORV_RESULT_NAME(ORV_E_CHECKSUM);
        ORV_RESULT_NAME(ORV_E_INVALID_NAME);
        ORV_RESULT_NAME(ORV_E_OBJECT_NOT_FOUND);
        ORV_RESULT_NAME(ORV_E_INVALID_ADDRESS);
        ORV_RESULT_NAME(ORV_E_INVALID_ACCESS);
        ORV_RESULT_NAME(ORV_E_ALREADY_EXISTS);
        ORV_RESULT_NAME(ORV_E_NEGATIVE_SEEK);
        ORV_RESULT_NAME(ORV_E_NO_ACCESS);
        ORV_RESULT_NAME(ORV_E_SHARING_VIOLATION);
        ORV_RESULT_NAME(ORV_E_NOT_SUPPORTED);
        ORV_RESULT_NAME(ORV_E_INVALID_OPERATION);
        ORV_RESULT_NAME(ORV_E_INVALID_FUNCTION);
        ORV_RESULT_NAME(ORV_E_ABORTED);
        ORV_RESULT_NAME(ORV_E_ACCESS_DENIED);
        ORV_RESULT_NAME(ORV_E_TIME_OUT_OF_RANGE);
        ORV_RESULT_NAME(ORV_E_DURATION_OUT_OF_RANGE);
        ORV_RESULT_NAME(ORV_E_INVALID_STATE);
        ORV_RESULT_NAME(ORV_E_THREAD_RUNNING);
        ORV_RESULT_NAME(ORV_E_DISK_FULL);
        ORV_RESULT_NAME(ORV_E_NOT_TERMINATED);
        ORV_RESULT_NAME(ORV_E_END_OF_DATA);
        ORV_RESULT_NAME(ORV_E_CONNECTION_REFUSED);
        ORV_RESULT_NAME(ORV_W_TIMEOUT);
        ORV_RESULT_NAME(ORV_W_STILL_ACTIVE);
        ORV_RESULT_NAME(ORV_W_NEGATIVE_DURATION);
        ORV_RESULT_NAME(ORV_S_ABANDONED);
        ORV_RESULT_NAME(ORV_S_OBJECT_NOT_FOUND);
        ORV_RESULT_NAME(ORV_S_ALREADY_EXISTS);
        ORV_RESULT_NAME(ORV_S_NOT_SUPPORTED);
        ORV_RESULT_NAME(ORV_S_END_OF_TIME);
        ORV_RESULT_NAME(ORV_S_NOT_SET);
        ORV_RESULT_NAME(ORV_S_END_OF_DATA);
    }
    return nullptr;
}

#undef ORV_RESULT_NAME
