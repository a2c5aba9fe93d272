// Memory that several parties share: a section of the paging file, which other processes open by an object id
// and a name space, or a reference-counted block of the process heap, which objects of one process pass to
// each other. The server makes the memory, the client joins it; views (orv/shm/shared_memory_view.h) give
// access to it.
//
// A section starts with zeros, a heap block with any contents. The memory has no header: its users agree on
// its layout, and on who may write when.
//
// A section lives until the last handle and the last view of it are gone, in any process; a heap block lives
// until the last server and client of it have closed. An object has no lock: creating, opening and closing
// must not race with its use.

#pragma once

#include "orv/base.h"
#include "orv/flags.h"
#include "orv/runtime/heap_object.h"
#include "orv/security/security_context.h"
#include "orv/sync/sync_named.h"

namespace detail
{
struct SharedHeapBlock;
}

/// What a client opens a section for; they combine.
enum OrvAccessFlagsValues : uint32_t {
    OrvAccessRead = 0x1,
    OrvAccessWrite = 0x2,
};

/// What server and client have in common.
class OrvSharedMemoryBase : public OrvHeapObject
{
public:
    OrvSharedMemoryBase(const OrvSharedMemoryBase &) = delete;
    OrvSharedMemoryBase &operator=(const OrvSharedMemoryBase &) = delete;

    /// Releases the memory: the heap block if there is one, otherwise the section. Views of a section stay;
    /// views of a heap block must not be used any longer once the block is gone. Always returns 0.
    ORV_API OrvResult Close();

    /// Whether a section or a heap block is held.
    ORV_API bool IsInitialized() const;

    /// Whether it is a heap block.
    ORV_API bool IsStorageHeap() const;

    /// Close.
    ORV_API virtual ~OrvSharedMemoryBase();

protected:
    ORV_API OrvSharedMemoryBase();

    OrvBasSyncNamed naming_;                       ///< id and name space
    void *section_ = reinterpret_cast<void *>(-1); ///< its handle, or the invalid one
    detail::SharedHeapBlock *heapBlock_ = nullptr; ///< null when there is none
    uint32_t heapSize_ = 0;                        ///< of the block, in bytes
    uint32_t access_ = 0;                          ///< with bit 0x2 views may be written to

    friend class OrvSharedMemoryClient;
    friend class OrvSharedMemoryView;
};

static_assert(sizeof(OrvSharedMemoryBase) == 284, "fixed layout");

/// Makes the memory.
class OrvSharedMemoryServer : public OrvSharedMemoryBase
{
public:
    ORV_API OrvSharedMemoryServer();
    ORV_API ~OrvSharedMemoryServer() override;

    /// Closes what is held and makes `size` bytes of shared memory.
    ///
    /// With OrvBasSyncProcess that is a heap block; id and context are not used. Otherwise it is a section
    /// with the id's name in the name space and with the context's descriptor; id 0 makes a section without a
    /// name, which others reach only by its handle. The context may be null. The name is in the directory of
    /// the caller's session, or in the base directory on a system without session directories.
    ///
    /// With OrvBasSyncGlobal, Windows lets a process outside session 0 make a section only if it has the
    /// privilege to create global objects (SeCreateGlobalPrivilege), which services and administrators have.
    /// Opening one takes no privilege. Applications from the store have no global names at all. A process
    /// without the right gets ORV_E_ACCESS_DENIED.
    ///
    /// Returns 0; ORV_S_ALREADY_EXISTS when a section of that name existed: it is shared and keeps its size;
    /// ORV_E_OUT_OF_MEMORY; a failure of the context; otherwise the converted status: ORV_E_INVALID_ARGUMENT
    /// for a section of 0 bytes, ORV_E_PATH_NOT_FOUND when neither directory exists, ORV_E_INVALID_HANDLE
    /// when the name belongs to an object of another type. On failure nothing is held.
    ORV_API OrvResult Create(unsigned int size, unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace,
                             OrvSecurityCtx *context);

    /// Close.
    ORV_API OrvResult Destroy();
};

/// Joins the memory that a server made.
class OrvSharedMemoryClient : public OrvSharedMemoryBase
{
public:
    ORV_API OrvSharedMemoryClient();
    ORV_API ~OrvSharedMemoryClient() override;

    /// Closes what is held and opens the section that a server made by this id in this name space, with the
    /// rights to read and to write that `access` names. Views are writable unless they are attached
    /// read-only, whatever `access` says: a client without the right to write must attach them read-only.
    ///
    /// Returns 0; ORV_E_NOT_PROVIDED for OrvBasSyncProcess, and then nothing has changed (see Connect);
    /// otherwise the converted status: ORV_E_FILE_NOT_FOUND when there is no such section,
    /// ORV_E_ACCESS_DENIED. On a failure of the platform nothing is held.
    ORV_API OrvResult Open(unsigned long objectId, OrvBasSyncObjectNameSpace nameSpace,
                           OrvFlags<OrvAccessFlagsValues> access);

    /// Closes what is held and shares the memory of a server in this process: its heap block, or its section
    /// with the right to read. Views of that section are always read-only in a client that never called Open;
    /// after an Open they must be attached read-only.
    ///
    /// Returns 0, or the converted status, ORV_E_INVALID_HANDLE when the server holds nothing; nothing is
    /// held then.
    ORV_API OrvResult Connect(OrvSharedMemoryServer &server);

    /// Takes ownership of a section. A section that is already held is not closed. Views are as after
    /// Connect.
    ORV_API void AttachToSection(void *handle);

    /// Passes the ownership of the section to the caller; returns the invalid handle 0xFFFFFFFF when there is
    /// none.
    ORV_API void *DetachFromSection();
};

static_assert(sizeof(OrvSharedMemoryServer) == sizeof(OrvSharedMemoryBase), "no fields of its own");
static_assert(sizeof(OrvSharedMemoryClient) == sizeof(OrvSharedMemoryBase), "no fields of its own");
