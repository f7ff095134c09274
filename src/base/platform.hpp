// The few places where the program touches the operating system beyond standard C++.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Number of processors the OpenMP runtime sees: those the process may run on.
int ProcessorCount();

// The memory a run may plan to use, in bytes: the machine's physical memory, unless a harness
// has set less. Readers check what a model would need against it before they allocate.
uint64_t MemoryBudgetBytes();
void SetMemoryBudgetBytes(uint64_t bytes);

// Number of processors that the process which started this one may run on: what a process
// started beside it would see. A launcher that binds the processes it starts to a few processors
// does not bind itself.
int LauncherProcessorCount();

// Size of a file in bytes, or nothing when it cannot be opened or measured.
std::optional<uint64_t> FileSize(const std::string& path);

// Raises the process to a high scheduling priority where the OS permits; Restore goes back to
// the priority the process had. Both do nothing where the OS refuses.
void RaiseProcessPriority();
void RestoreProcessPriority();

// Creates a folder, or finds one there already. Returns 0 when the folder is there afterwards,
// and otherwise the system's error number (ENOTDIR when a file of that name is in the way).
int CreateFolder(const std::string& path);

// Removes a file; a failure is ignored.
void RemoveFile(const std::string& path);
