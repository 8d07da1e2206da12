// Processes of their own for tests: what they do is named by words, because a process that is
// started anew has nothing else.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace tessaro::test {

using Role = std::vector<std::string>;
/// What a child does; set by the tests that have any. The result is its exit code.
inline std::function<int(const Role&)> playRole;

/// Ends this process at once, with nothing cleared up.
inline void KillMyself() {
#ifdef _WIN32
    ::TerminateProcess(::GetCurrentProcess(), 9);
#else
    ::kill(::getpid(), SIGKILL);
#endif
}

class Child {
public:
    explicit Child(const Role& role) {
#ifdef _WIN32
        std::string words;
        for (const std::string& word : role)
            words += (words.empty() ? "" : "|") + word;
        ::SetEnvironmentVariableA("TESSARO_TEST_ROLE", words.c_str());
        char self[MAX_PATH];
        ::GetModuleFileNameA(nullptr, self, MAX_PATH);
        std::string line = std::string(self) + " --gtest_filter=Child.* --gtest_brief=1";
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        EXPECT_TRUE(::CreateProcessA(self, line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                     nullptr, &startup, &started));
        ::CloseHandle(started.hThread);
        process_ = started.hProcess;
        ::SetEnvironmentVariableA("TESSARO_TEST_ROLE", nullptr);
#else
        process_ = ::fork();
        if (process_ == 0)
            ::_exit(playRole(role));
#endif
    }
    /// Its exit code; another number than 0 where it was killed.
    int Wait() const {
#ifdef _WIN32
        DWORD code = 1;
        ::WaitForSingleObject(process_, INFINITE);
        ::GetExitCodeProcess(process_, &code);
        ::CloseHandle(process_);
        return static_cast<int>(code);
#else
        int status = 0;
        ::waitpid(process_, &status, 0);
        return status;
#endif
    }

private:
#ifdef _WIN32
    HANDLE process_;
#else
    pid_t process_;
#endif
};

}  // namespace tessaro::test
