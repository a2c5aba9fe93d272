// Mutexes over the native interface, which calls them mutants.

#include "orv/sync/mutex.h"

#include "nt/counted_string.h"
#include "nt/nt.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/text/string.h"
#include "runtime/status.h"
#include "sync/native_object.h"

namespace
{

// Less than full access to a mutex: the handle has no right to change the mutex's security.
constexpr ACCESS_MASK kMutexAccess = SYNCHRONIZE | DELETE | MUTANT_QUERY_STATE;
static_assert(kMutexAccess == 0x110001);

} // namespace

OrvBasMutex::OrvBasMutex() = default;

OrvBasMutex::~OrvBasMutex() = default;

OrvResult OrvBasMutex::Create(bool initialOwner)
{
    if (IsInitialized())
        return ORV_E_ALREADY_EXISTS;
    return InternalCreate(initialOwner, nullptr, nullptr);
}

OrvResult OrvBasMutex::InternalCreate(bool initialOwner, const wchar_t *name, void *securityDescriptor)
{
    // The table counts as initialised only if it has ZwCreateMutant, which is called below.
    if (!OrvNtdllIsTableInitialized())
        return ORV_E_NOT_SUPPORTED;
    OBJECT_ATTRIBUTES attributes = detail::kUnnamedObject;
    attributes.SecurityDescriptor = securityDescriptor;
    UNICODE_STRING counted;
    if (name) {
        const uint32_t length = OrvGetStringSizeInElements(name, detail::kLongestCounted + 1);
        if (!detail::CountText(name, length, counted))
            return ORV_E_INVALID_NAME;
        attributes.ObjectName = &counted;
        attributes.Attributes |= OBJ_OPENIF;
    }
    HANDLE handle = nullptr;
    const NTSTATUS status = OrvNtdll_ZwCreateMutant(&handle, kMutexAccess, &attributes, initialOwner);
    return detail::AttachCreated(*this, status, handle);
}

OrvResult OrvBasMutex::Release()
{
    return detail::ResultFromCall(ZwReleaseMutant(GetHandle(), nullptr));
}

OrvResult OrvBasMutex::Acquire(int timeoutMs)
{
    return InternalWait(timeoutMs);
}
