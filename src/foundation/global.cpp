#include "foundation/global.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <unordered_set>
#include <utility>

#include "foundation/guard.h"
#include "foundation/store.h"
#include "platform/file.h"
#include "platform/system.h"

namespace tessaro::modGlobal {
namespace {

std::string BackupName(const std::string& fileName, std::int32_t number) {
    if (number < 1)
        return fileName;
    std::array<char, 16> suffix{};
    std::snprintf(suffix.data(), suffix.size(), ".%03d", static_cast<int>(number));
    return fileName + suffix.data();
}

std::string BackupPath(const std::string& fileName, std::int32_t number) {
    return JoinPath(ConfiguredGame().backupFolder, BackupName(fileName, number));
}

void AppendToLog(std::string_view procedure, const Failure& failure) {
    std::string entry = "Date/Time: " + LocalTimestamp() + "\r\n";
    entry.append("Procedure: ").append(procedure) += "\r\n";
    entry += "Error number: " + std::to_string(failure.Number) + "\r\n";
    if (failure.Line > 0)
        entry += "Line: " + std::to_string(failure.Line) + "\r\n";
    entry += "Description: " + failure.Description + "\r\n";
    entry += std::string(52, '-') + "\r\n";

    std::string folder = SharedStore().appPath;
    if (folder.empty())  // a thread on which no clsVersion was created
        folder = DefaultAppPath();
    DiskFiles()->Append(PathFromHost(JoinPath(folder, "Error.log")),
                        {reinterpret_cast<const std::uint8_t*>(entry.data()), entry.size()},
                        Flushed::No);
}

}  // namespace

void SetErrorState(const Failure& failure) {
    SharedStore().errorState = failure;
}

void ReportError(std::string_view procedure) {
    const Failure failure = std::exchange(SharedStore().errorState, Failure(0, ""));
    std::string message = "Error " + std::to_string(failure.Number) + " in ";
    message += procedure;
    if (failure.Line > 0)
        message += " at line " + std::to_string(failure.Line);
    message += ": " + failure.Description;
    const std::string title = std::string(procedure) + " Error";

    std::int32_t style = mbCritical | mbOKOnly;
    std::string helpFile;
    std::int32_t helpContext = 0;
    if (const std::int32_t family = failure.Number / 100; family >= 14 && family <= 16) {
        const std::string candidate = JoinPath(LibraryFolder(), "KZR.chm");
        if (FileExists(candidate)) {
            style |= mbHelpButton;
            helpFile = candidate;
            helpContext = failure.Number;
        }
    }
    CurrentUserInterface().MsgBox(message, style, title, helpFile, helpContext);
    AppendToLog(procedure, failure);
}

void EnsureBackupFolder() {
    if (!FolderExists(ConfiguredGame().backupFolder))
        CreateFolder(ConfiguredGame().backupFolder);
}

std::int32_t NextBackupNumber(const std::vector<std::string>& fileNames) {
    const std::string& folder = ConfiguredGame().backupFolder;
    if (!FolderExists(folder))
        return 1;
    // Listed once: a folder of thousands takes long to look through for each name.
    std::unordered_set<std::string> present;
    for (const std::string& name : ListFiles(folder, "*"))
        present.insert(UpperCase(name));
    for (std::int32_t number = 1;; ++number) {
        const auto isTaken = [&](const std::string& name) {
            return present.contains(UpperCase(BackupName(name, number)));
        };
        if (std::ranges::none_of(fileNames, isTaken))
            return number;
    }
}

bool BackupFile(const std::string& path, std::int32_t number) {
    try {
        if (!FileExists(path))
            return false;
        EnsureBackupFolder();
        const std::string backup = BackupPath(FileNameFromPath(path, false), number);
        if (FileExists(backup)) {
            if (number >= 1) {
                SharedStore().errorState.Description = "Bad backup number!";
                ReportError("modGlobal.BackupFile");
                return false;
            }
            DeleteFileAt(backup);
        }
        MoveFileTo(path, backup);
        return true;
    } catch (...) {
        Failure failure = CurrentFailure();
        failure.Description =
            "Folder: " + ConfiguredGame().backupFolder + "\r\n\r\n" + failure.Description;
        SetErrorState(failure);
    }
    ReportError("modGlobal.BackupFile");
    return false;
}

bool RestoreFile(const std::string& path, std::int32_t number) {
    return Guarded("modGlobal.RestoreFile", [&] {
        if (!FileExists(path))
            return false;
        EnsureBackupFolder();
        const std::string backup = BackupPath(FileNameFromPath(path, false), number);
        if (!FileExists(backup))
            return false;
        MoveFileTo(backup, path);  // at no time is there neither of the two
        return true;
    });
}

std::string FileNameFromPath(std::string_view path, bool dropExtension) {
    const std::size_t separator = LastSeparator(path);
    std::string name(separator == std::string_view::npos ? path : path.substr(separator + 1));
    if (dropExtension) {
        const std::size_t point = name.find('.');
        if (point == std::string::npos)  // the length to keep would be negative
            throw Failure(kInvalidProcedureCall);
        name.resize(point);
    }
    return name;
}

}  // namespace tessaro::modGlobal
