#include "cli/program_folder.h"

#include <system_error>

#include "base/files.h"
#include "base/paths.h"

#if defined(_WIN32)
#include <windows.h>
#elif defined(__APPLE__)
#include <mach-o/dyld.h>

#include <array>
#include <cstdint>
#endif

namespace quorvane {

namespace fs = std::filesystem;

namespace {

// The program file as the system names it; empty if it does not.
fs::path ProgramFile() {
#if defined(_WIN32)
  std::wstring name(32768, L'\0');  // the longest path of the system
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return name;
#elif defined(__APPLE__)
  std::array<char, 4096> name{};
  auto size = static_cast<std::uint32_t>(name.size());
  if (_NSGetExecutablePath(name.data(), &size) != 0) return {};
  return name.data();
#else
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
#endif
}

}  // namespace

fs::path ProgramFolder(const char* name) {
  const fs::path file = ProgramFile();
  return ResolvedPath(file.empty() ? WholePath(PathFromText(name)) : file).parent_path();
}

}  // namespace quorvane
