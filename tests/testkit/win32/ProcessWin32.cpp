#include "testkit/win32/WindowsKit.h"
#include "testkit/win32/WindowsText.h"

#include <windows.h>

#include <cstdlib>

#include "KrsDiagnostics.h"

namespace testkit {
namespace {

void removeTree(const std::wstring& path) {
  WIN32_FIND_DATAW entry;
  const HANDLE listing = FindFirstFileW((path + L"\\*").c_str(), &entry);
  if (listing != INVALID_HANDLE_VALUE) {
    do {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      const std::wstring child = path + L"\\" + name;
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        removeTree(child);
      else
        DeleteFileW(child.c_str());
    } while (FindNextFileW(listing, &entry));
    FindClose(listing);
  }
  RemoveDirectoryW(path.c_str());
}

HANDLE asHandle(void* handle) { return static_cast<HANDLE>(handle); }

}  // namespace

std::wstring wide(const std::string& text) {
  const int size = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  std::wstring out(static_cast<std::size_t>(size > 0 ? size : 1), L'\0');
  if (size > 0) MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, &out[0], size);
  out.resize(out.size() - 1);
  return out;
}

std::string narrow(const std::wstring& text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(size > 0 ? size : 1), '\0');
  if (size > 0) WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, &out[0], size, nullptr, nullptr);
  out.resize(out.size() - 1);
  return out;
}

std::string moduleFile(const void* address) {
  HMODULE module = nullptr;
  wchar_t path[MAX_PATH * 4];
  const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (address && !GetModuleHandleExW(flags, static_cast<LPCWSTR>(address), &module)) return {};
  const DWORD length = GetModuleFileNameW(module, path, MAX_PATH * 4);
  return length > 0 && length < MAX_PATH * 4 ? narrow(path) : std::string();
}

std::string makeScratchDirectory(const char* stem) {
  wchar_t base[MAX_PATH + 1];
  const DWORD length = GetTempPathW(MAX_PATH + 1, base);
  if (length == 0 || length > MAX_PATH) return {};
  for (unsigned attempt = 0; attempt < 100; ++attempt) {
    const std::wstring path = std::wstring(base) + wide(stem) + std::to_wstring(GetCurrentProcessId()) + L"-" +
                              std::to_wstring(GetTickCount() + attempt);
    if (CreateDirectoryW(path.c_str(), nullptr)) return narrow(path);
  }
  return {};
}

void removeDirectory(const std::string& path) { removeTree(wide(path)); }

std::string directoryOf(const std::string& path) { return path.substr(0, path.find_last_of("\\/")); }
std::string fileNameOf(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

bool writeFile(const std::string& path, const std::string& content) {
  const HANDLE file = CreateFileW(wide(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool ok = WriteFile(file, content.data(), static_cast<DWORD>(content.size()), &written, nullptr) &&
                  written == content.size();
  return CloseHandle(file) && ok;
}

// The command-line quoting that the C runtime's argument parser undoes.
std::wstring quoted(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) return argument;
  std::wstring out = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : argument) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    out.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
    backslashes = 0;
    out += c;
  }
  out.append(2 * backslashes, L'\\');
  return out + L"\"";
}

ScratchDir::ScratchDir() : m_path(makeScratchDirectory("krgel-scratch-")) {}
ScratchDir::~ScratchDir() {
  if (ok()) removeDirectory(m_path);
}

bool ScratchDir::write(const std::string& name, const std::string& content) const {
  return writeFile(file(name), content);
}

bool ScratchDir::copyLibrary() const {
  const std::string library = moduleFile(reinterpret_cast<const void*>(&KrsQueryAssertState));
  return !library.empty() && CopyFileW(wide(library).c_str(), wide(file(fileNameOf(library))).c_str(), FALSE);
}

std::string ScratchDir::copyProgram(const std::string& name) const {
  const std::string target = file(name);
  return CopyFileW(wide(buildProgram(name)).c_str(), wide(target).c_str(), FALSE) ? target : std::string();
}

std::string buildProgram(const std::string& name) {
  const char* origin = std::getenv("KRGEL_TEST_ORIGIN");
  return (origin ? std::string(origin) : directoryOf(moduleFile(nullptr))) + "\\" + name;
}

ChildProcess::ChildProcess(const std::vector<std::string>& argv, const std::string& directory) {
  if (argv.empty()) return;
  SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE childIn = nullptr, childOut = nullptr, in = nullptr, out = nullptr;
  if (!CreatePipe(&childIn, &in, &inherit, 0)) return;
  if (!CreatePipe(&out, &childOut, &inherit, 0)) {
    CloseHandle(childIn);
    CloseHandle(in);
    return;
  }
  SetHandleInformation(in, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(out, HANDLE_FLAG_INHERIT, 0);
  std::wstring commandLine;
  for (const std::string& argument : argv) commandLine += (commandLine.empty() ? L"" : L" ") + quoted(wide(argument));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = childIn;
  startup.hStdOutput = childOut;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  const std::wstring where = wide(directory);
  if (CreateProcessW(wide(argv[0]).c_str(), &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr,
                     directory.empty() ? nullptr : where.c_str(), &startup, &process)) {
    CloseHandle(process.hThread);
    m_process = process.hProcess;
    m_pid = process.dwProcessId;
  }
  CloseHandle(childIn);
  CloseHandle(childOut);
  m_in = in;
  m_out = out;
}

ChildProcess::~ChildProcess() {
  closeInput();
  if (m_process && wait(5000) < 0) {
    TerminateProcess(asHandle(m_process), 1);
    wait(5000);
  }
  if (m_out) CloseHandle(asHandle(m_out));
  if (m_process) CloseHandle(asHandle(m_process));
}

bool ChildProcess::readLine(std::string& line, int timeoutMs) {
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(timeoutMs);
  for (;;) {
    const std::size_t end = m_buffer.find('\n');
    if (end != std::string::npos) {
      line = m_buffer.substr(0, end > 0 && m_buffer[end - 1] == '\r' ? end - 1 : end);
      m_buffer.erase(0, end + 1);
      return true;
    }
    DWORD available = 0;
    if (!m_out || !PeekNamedPipe(asHandle(m_out), nullptr, 0, nullptr, &available, nullptr)) return false;
    if (available == 0) {
      if (GetTickCount64() >= deadline) return false;
      Sleep(2);
      continue;
    }
    char chunk[4096];
    DWORD read = 0;
    if (!ReadFile(asHandle(m_out), chunk, available < sizeof chunk ? available : sizeof chunk, &read, nullptr)) return false;
    m_buffer.append(chunk, read);
  }
}

std::string ChildProcess::call(const std::string& command, int timeoutMs) {
  const std::string line = command + "\n";
  DWORD written = 0;
  if (!m_in || !WriteFile(asHandle(m_in), line.data(), static_cast<DWORD>(line.size()), &written, nullptr))
    return "<no answer>";
  std::string answer;
  return readLine(answer, timeoutMs) ? answer : "<no answer>";
}

std::string ChildProcess::readAll(int timeoutMs) {
  std::string line, all;
  while (readLine(line, timeoutMs)) all += line + "\n";
  all += m_buffer;
  m_buffer.clear();
  return all;
}

void ChildProcess::closeInput() {
  if (m_in) CloseHandle(asHandle(m_in));
  m_in = nullptr;
}

long long ChildProcess::wait(int timeoutMs) {
  DWORD code = 0;
  if (!m_process || WaitForSingleObject(asHandle(m_process), static_cast<DWORD>(timeoutMs)) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(asHandle(m_process), &code))
    return -1;
  return code;
}

}  // namespace testkit
