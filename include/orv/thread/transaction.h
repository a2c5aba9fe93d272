// A kernel transaction, inside which other operations may be done.

#pragma once

#include "orv/base.h"

/// Owns at most one transaction. One that was not committed is rolled back when its last handle is closed.
class OrvWinTransaction
{
public:
    OrvWinTransaction() = default;
    OrvWinTransaction(const OrvWinTransaction &) = delete;
    OrvWinTransaction &operator=(const OrvWinTransaction &) = delete;

    /// Close.
    ORV_API ~OrvWinTransaction();

    /// Starts a transaction without a time limit. Returns 0; ORV_E_ALREADY_EXISTS when there is one;
    /// ORV_E_NOT_SUPPORTED where the platform has no transactions; otherwise the converted status.
    ORV_API OrvResult Create();

    /// Makes the changes inside it permanent. Returns 0; ORV_E_INVALID_HANDLE when there is no transaction;
    /// otherwise the converted status.
    ORV_API OrvResult Commit();

    /// Undoes the changes inside it. Returns as Commit.
    ORV_API OrvResult Rollback();

    /// Closes the handle. Returns 0, also when there is no transaction; or the converted status, and the
    /// handle is then kept.
    ORV_API OrvResult Close();

    /// The native handle, or the invalid handle 0xFFFFFFFF.
    void *GetHandle() const { return handle_; }

private:
    void *handle_ = reinterpret_cast<void *>(-1);
};
