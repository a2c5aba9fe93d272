// Start-up: the top layer over all subsystems. It may include everything, and nothing includes it.
//
// A start-up that fails stops at the failing step and stays counted; its caller undoes the count. Teardown
// only counts, because code of other modules may still use the tables and the facts.

#include "startup/startup.h"

#include "env/win_version.h"
#include "nt/nt.h"
#include "nt/teb.h"
#include "orv/env/environment.h"
#include "orv/env/machine_info.h"
#include "orv/env/os_info.h"
#include "orv/runtime/kernel32_entry_points.h"
#include "orv/runtime/ntdll_entry_points.h"
#include "orv/runtime/result.h"
#include "orv/startup/startup.h"
#include "orv/sync/spin_lock.h"
#include "runtime/status.h"
#include "thread/thread_record.h"

namespace
{

OrvSpinLock startUpLock = {0, 1}; // waiters sleep 1 ms, so that a holder of lower priority can run
int32_t startUpCount;
bool isAttached;

OrvResult RecordMachineFacts()
{
    SYSTEM_BASIC_INFORMATION basic = {};
    const NTSTATUS status = ZwQuerySystemInformation(SystemBasicInformation, &basic, sizeof basic, nullptr);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    OrvEnvironment::MachineInfo::Initialize(
        {basic.PageSize, basic.AllocationGranularity, basic.NumberOfProcessors});
    return ORV_S_OK;
}

/// The architecture of the system itself. A 64-bit system shows a 32-bit process a different one.
OrvResult QueryArchitecture(OrvEnvironment::ProcessorArchitecture &architecture)
{
    architecture = OrvEnvironment::ProcessorX86;
    if (!OrvNtdllIsFnLoaded_RtlGetNativeSystemInformation())
        return ORV_S_OK;
    SYSTEM_PROCESSOR_INFORMATION processor = {};
    const NTSTATUS status = OrvNtdll_RtlGetNativeSystemInformation(SystemProcessorInformation, &processor,
                                                                   sizeof processor, nullptr);
    if (!NT_SUCCESS(status))
        return detail::ResultFromStatus(status);
    if (processor.ProcessorArchitecture == PROCESSOR_ARCHITECTURE_IA64)
        architecture = OrvEnvironment::ProcessorItanium;
    else if (processor.ProcessorArchitecture == PROCESSOR_ARCHITECTURE_AMD64)
        architecture = OrvEnvironment::ProcessorX64;
    return ORV_S_OK;
}

OrvResult RecordOsFacts()
{
    const TEB *const teb = NtCurrentTeb();
    if (!teb || !teb->ProcessEnvironmentBlock)
        return ORV_E_OBJECT_NOT_FOUND;
    const PEB &peb = *teb->ProcessEnvironmentBlock;
    const volatile KUSER_SHARED_DATA &shared = SharedUserData();

    OrvEnvironment::OsFacts facts = {};
    facts.majorVersion = shared.NtMajorVersion;
    facts.minorVersion = shared.NtMinorVersion;
    facts.buildNumber = peb.OSBuildNumber;
    facts.servicePackMajor = peb.OSCSDVersion >> 8;
    facts.servicePackMinor = peb.OSCSDVersion & 0xFF;
    facts.suiteMask = shared.SuiteMask;
    facts.productType = static_cast<OrvEnvironment::ProductType>(shared.NtProductType);
    OrvResult result = QueryArchitecture(facts.processorArchitecture);
    if (OrvFailed(result))
        return result;

    wchar_t version[OrvEnvironment::detail::kWinVersionCapacity];
    result = OrvEnvironment::detail::GetWinVersionString(facts, version, sizeof version / sizeof *version);
    if (OrvSucceeded(result))
        OrvEnvironment::OsInfo::Initialize(facts, version);
    return result;
}

OrvResult StartUp()
{
    if (!OrvNtdllIsTableInitialized()) {
        const OrvResult result = OrvNtdllTableInitialize();
        if (OrvFailed(result))
            return result;
    }
    if (!OrvKernel32IsTableInitialized())
        OrvKernel32TableInitializeIfLoaded(); // may fail: a process may run without kernel32.dll

    // The generator of random numbers needs no step here: it starts with the same state in every process, so
    // the compiler initialises it.

    const OrvResult result = RecordMachineFacts();
    return OrvFailed(result) ? result : RecordOsFacts();
}

void CountTeardown()
{
    if (startUpCount > 0)
        startUpCount--;
}

/// Creates the key, and the record of the thread that attaches the library.
OrvResult CreateFirstThreadRecord()
{
    OrvResult result = detail::AllocateThreadRecordKey();
    if (OrvFailed(result))
        return result;
    result = detail::EnsureThreadRecord();
    if (OrvFailed(result))
        detail::FreeThreadRecordKey();
    return result;
}

/// The steps of attaching that follow the start-up and precede the runtime's own work.
OrvResult PrepareProcess()
{
    OrvResult result = OrvEnvironment::InitializeEnvironment();
    if (OrvFailed(result))
        return result;
    result = detail::CreateThreadRecordList();
    if (OrvFailed(result))
        return result;
    result = CreateFirstThreadRecord();
    if (OrvFailed(result))
        detail::DeleteThreadRecordList();
    return result;
}

} // namespace

OrvResult InternalInitializeOrvSysDll()
{
    const OrvSpinLockLocker locker(&startUpLock, true);
    return ++startUpCount > 1 ? ORV_S_OK : StartUp();
}

void InternalDestroyOrvSysDll()
{
    const OrvSpinLockLocker locker(&startUpLock, true);
    CountTeardown();
}

OrvResult OrvInitializeSysMini()
{
    OrvResult result = InternalInitializeOrvSysDll();
    if (OrvFailed(result))
        return result;
    result = OrvEnvironment::InitializeEnvironment();
    if (OrvFailed(result))
        InternalDestroyOrvSysDll();
    return result;
}

void OrvDestroySysMini()
{
    InternalDestroyOrvSysDll();
}

namespace detail
{

OrvResult AttachProcess(const RuntimeWork &runtime)
{
    OrvResult result = InternalInitializeOrvSysDll();
    if (OrvSucceeded(result))
        result = PrepareProcess();
    if (OrvFailed(result)) {
        InternalDestroyOrvSysDll();
        return result;
    }
    result = runtime.attachProcess();
    if (OrvFailed(result)) {
        InternalDestroyOrvSysDll();
        FreeThreadRecordKey();
        DeleteThreadRecordList();
        InternalDestroyOrvSysDll(); // and the start-up that the static objects may have counted
        runtime.terminate();
        return result;
    }
    isAttached = true;
    return ORV_S_OK;
}

void AttachThread(const RuntimeWork &runtime)
{
    EnsureThreadRecord(); // may fail: a thread also works without a record
    runtime.attachThread();
}

void DetachThread(const RuntimeWork &runtime)
{
    runtime.detachThread();
    RemoveThreadRecord();
}

void DetachProcess(const RuntimeWork &runtime, Detaching detaching)
{
    if (!isAttached)
        return;
    isAttached = false;
    runtime.detachProcess();
    if (detaching == Detaching::kProcess) {
        CountTeardown();
    } else {
        FreeThreadRecordKey();
        DeleteThreadRecordList();
        InternalDestroyOrvSysDll();
    }
    runtime.terminate();
}

} // namespace detail
