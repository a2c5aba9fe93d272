// Shared memory: a server creates it, a client connects to it.

#include "orv/shm/shared_memory.h"

#include "nt/nt.h"
#include "orv/runtime/result.h"
#include "runtime/status.h"
#include "shm/shared_heap_block.h"

// offsetof of a class with virtual functions is conditionally supported; all compilers of this interface do.
#pragma clang diagnostic ignored "-Winvalid-offsetof"

namespace
{

constexpr uint32_t kReadWrite = OrvAccessRead | OrvAccessWrite;

/// Calls `make` with the object's attributes: first with its name in the session's directory, and if that
/// directory is missing, with its name in the base directory. An object without a name has one call.
template <typename Make>
NTSTATUS ByEitherName(OrvBasSyncNamed &naming, void *securityDescriptor, Make make)
{
    OBJECT_ATTRIBUTES attributes = {sizeof attributes,  nullptr, nullptr, OBJ_KERNEL_HANDLE,
                                    securityDescriptor, nullptr};
    if (!naming.IsNamed())
        return make(attributes);
    NTSTATUS status = STATUS_OBJECT_NAME_INVALID;
    constexpr OrvBasSyncNamed::NamedObjectRoot kRoots[] = {OrvBasSyncNamed::SessionRoot,
                                                           OrvBasSyncNamed::BaseRoot};
    for (const auto root : kRoots) {
        const wchar_t *const text = naming.GetConstructedWinObjectName(root);
        if (!text)
            return STATUS_OBJECT_NAME_INVALID;
        UNICODE_STRING name;
        RtlInitUnicodeString(&name, text);
        attributes.ObjectName = &name;
        attributes.Attributes = OBJ_KERNEL_HANDLE | OBJ_OPENIF;
        status = make(attributes);
        if (status != STATUS_OBJECT_PATH_NOT_FOUND)
            break;
    }
    return status;
}

} // namespace

OrvSharedMemoryBase::OrvSharedMemoryBase() : naming_(0, OrvBasSyncGlobal)
{
    static_assert(offsetof(OrvSharedMemoryBase, naming_) == 4);
    static_assert(offsetof(OrvSharedMemoryBase, section_) == 268);
    static_assert(offsetof(OrvSharedMemoryBase, heapBlock_) == 272);
    static_assert(offsetof(OrvSharedMemoryBase, heapSize_) == 276);
    static_assert(offsetof(OrvSharedMemoryBase, access_) == 280);
}

OrvSharedMemoryBase::~OrvSharedMemoryBase()
{
    Close();
}

OrvResult OrvSharedMemoryBase::Close()
{
    if (heapBlock_) {
        heapBlock_->Release();
        heapBlock_ = nullptr;
        heapSize_ = 0;
    } else if (section_ != INVALID_HANDLE_VALUE) {
        ZwClose(section_);
        section_ = INVALID_HANDLE_VALUE;
    }
    return ORV_S_OK;
}

bool OrvSharedMemoryBase::IsInitialized() const
{
    return heapBlock_ || section_ != INVALID_HANDLE_VALUE;
}

bool OrvSharedMemoryBase::IsStorageHeap() const
{
    return heapBlock_ != nullptr;
}

OrvSharedMemoryServer::OrvSharedMemoryServer() = default;

OrvSharedMemoryServer::~OrvSharedMemoryServer() = default;

OrvResult OrvSharedMemoryServer::Create(unsigned int size, unsigned long objectId,
                                        OrvBasSyncObjectNameSpace nameSpace, OrvSecurityCtx *context)
{
    naming_.SetObjectId(objectId, nameSpace);
    Close();
    if (nameSpace == OrvBasSyncProcess) {
        heapBlock_ = detail::SharedHeapBlock::Allocate(size != 0 ? size : 1);
        if (!heapBlock_)
            return ORV_E_OUT_OF_MEMORY;
        heapSize_ = size;
        return ORV_S_OK;
    }
    OrvWinSecurityDescriptor *descriptor = nullptr;
    if (naming_.IsNamed() && context) {
        const OrvResult result = context->GetSecurityDescriptor(descriptor);
        if (OrvFailed(result))
            return result;
    }
    HANDLE handle = nullptr;
    const LONGLONG maximumSize = size;
    const NTSTATUS status = ByEitherName(
        naming_, descriptor ? descriptor->GetNative() : nullptr, [&](const OBJECT_ATTRIBUTES &attributes) {
            return ZwCreateSection(&handle, SECTION_SHARED_ACCESS, &attributes, &maximumSize, PAGE_READWRITE,
                                   SEC_COMMIT, nullptr);
        });
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    section_ = handle;
    access_ = kReadWrite;
    return status == STATUS_OBJECT_NAME_EXISTS ? ORV_S_ALREADY_EXISTS : ORV_S_OK;
}

OrvResult OrvSharedMemoryServer::Destroy()
{
    return Close();
}

OrvSharedMemoryClient::OrvSharedMemoryClient() = default;

OrvSharedMemoryClient::~OrvSharedMemoryClient() = default;

OrvResult OrvSharedMemoryClient::Open(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace,
                                      OrvFlags<OrvAccessFlagsValues> access)
{
    if (nameSpace == OrvBasSyncProcess)
        return ORV_E_NOT_PROVIDED;
    naming_.SetObjectId(objectId, nameSpace);
    Close();
    ACCESS_MASK rights = 0;
    if (access.Has(OrvAccessWrite))
        rights |= SECTION_MAP_WRITE;
    if (access.Has(OrvAccessRead))
        rights |= SECTION_MAP_READ;
    HANDLE handle = nullptr;
    const OrvResult result =
        detail::ResultFromCall(ByEitherName(naming_, nullptr, [&](const OBJECT_ATTRIBUTES &attributes) {
            return ZwOpenSection(&handle, rights, &attributes);
        }));
    if (OrvFailed(result))
        return result;
    section_ = handle;
    access_ = kReadWrite;
    return ORV_S_OK;
}

OrvResult OrvSharedMemoryClient::Connect(OrvSharedMemoryServer &server)
{
    Close();
    if (server.heapBlock_) {
        heapBlock_ = server.heapBlock_->Share();
        heapSize_ = server.heapSize_;
        return ORV_S_OK;
    }
    // The value of an invalid handle is also the process's pseudo handle, which could be duplicated.
    if (!server.IsInitialized())
        return ORV_E_INVALID_HANDLE;
    HANDLE handle = nullptr;
    const OrvResult result = detail::ResultFromCall(ZwDuplicateObject(
        NtCurrentProcess(), server.section_, NtCurrentProcess(), &handle, GENERIC_READ, 0, 0));
    if (OrvSucceeded(result))
        section_ = handle;
    return result;
}

void OrvSharedMemoryClient::AttachToSection(void *handle)
{
    section_ = handle;
}

void *OrvSharedMemoryClient::DetachFromSection()
{
    void *const handle = section_;
    section_ = INVALID_HANDLE_VALUE;
    return handle;
}
