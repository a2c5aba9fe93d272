// Transactions of the kernel transaction manager, over the table of optional entry points.

#include "orv/thread/transaction.h"

#include "nt/nt.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"

OrvWinTransaction::~OrvWinTransaction()
{
    Close();
}

OrvResult OrvWinTransaction::Create()
{
    if (handle_ != INVALID_HANDLE_VALUE)
        return ORV_E_ALREADY_EXISTS;
    if (!OrvNtdll_FunctionExists("ZwCreateTransaction"))
        return ORV_E_NOT_SUPPORTED;
    const OBJECT_ATTRIBUTES attributes = {sizeof attributes, nullptr, nullptr, 0, nullptr, nullptr};
    HANDLE handle = nullptr;
    const OrvResult result = detail::ResultFromCall(OrvNtdll_ZwCreateTransaction(
        &handle, TRANSACTION_ALL_ACCESS, &attributes, nullptr, nullptr, 0, 0, 0, nullptr, nullptr));
    if (OrvSucceeded(result))
        handle_ = handle;
    return result;
}

OrvResult OrvWinTransaction::Commit()
{
    if (handle_ == INVALID_HANDLE_VALUE)
        return ORV_E_INVALID_HANDLE;
    return detail::ResultFromCall(OrvNtdll_ZwCommitTransaction(handle_, true));
}

OrvResult OrvWinTransaction::Rollback()
{
    if (handle_ == INVALID_HANDLE_VALUE)
        return ORV_E_INVALID_HANDLE;
    return detail::ResultFromCall(OrvNtdll_ZwRollbackTransaction(handle_, true));
}

OrvResult OrvWinTransaction::Close()
{
    if (handle_ == INVALID_HANDLE_VALUE)
        return ORV_S_OK;
    const OrvResult result = detail::ResultFromCall(ZwClose(handle_));
    if (OrvSucceeded(result))
        handle_ = INVALID_HANDLE_VALUE;
    return result;
}
