// Test support: small file systems mounted over a test's folders, to give a run a full disk or a
// read-only folder for real. Mounting needs root (and a system that lets it mount); where that
// is not given a mount fails with its reason, and the test skips.
#pragma once

#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

class ScopedMount {
  public:
    // A tmpfs of sizeBytes over the folder (whose contents it hides while mounted).
    static std::unique_ptr<ScopedMount> Tmpfs(const std::string& folder, size_t sizeBytes,
                                              std::string& why) {
        const std::string options = "size=" + std::to_string(sizeBytes);
        if (mount("tmpfs", folder.c_str(), "tmpfs", 0, options.c_str()) != 0)
            return Failed("tmpfs", folder, why);
        return std::unique_ptr<ScopedMount>(new ScopedMount(folder));
    }

    // The folder mounted onto itself read-only: its contents stay, nothing can be written.
    static std::unique_ptr<ScopedMount> ReadOnly(const std::string& folder, std::string& why) {
        if (mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) != 0)
            return Failed("bind", folder, why);
        auto bound = std::unique_ptr<ScopedMount>(new ScopedMount(folder));
        if (mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0)
            return Failed("read-only remount", folder, why);
        return bound;
    }

    // A new size for a tmpfs mounted by Tmpfs; false with the reason when refused.
    bool Resize(size_t sizeBytes, std::string& why) const {
        const std::string options = "size=" + std::to_string(sizeBytes);
        if (mount(nullptr, folder_.c_str(), nullptr, MS_REMOUNT, options.c_str()) == 0) return true;
        Failed("tmpfs resize", folder_, why);
        return false;
    }

    ~ScopedMount() { umount2(folder_.c_str(), MNT_DETACH); }
    ScopedMount(const ScopedMount&) = delete;
    ScopedMount& operator=(const ScopedMount&) = delete;

  private:
    explicit ScopedMount(std::string folder) : folder_(std::move(folder)) {}

    static std::unique_ptr<ScopedMount> Failed(const char* what, const std::string& folder,
                                               std::string& why) {
        why = std::string("cannot mount (") + what + ") over " + folder + ": " +
              std::strerror(errno) + "; the case needs root and a system that lets it mount";
        return nullptr;
    }

    std::string folder_;
};
