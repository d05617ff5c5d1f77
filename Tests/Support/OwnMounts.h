#pragma once

namespace quillary::test {

/// Gives this program mounts of its own, so that tests can have other file systems and nothing of them stays behind. It
/// has to be called before any thread is started.
///
/// The superuser has the right to that. Anybody else gets it in a user namespace, where the user stays who he is, and
/// of all privileges has only that to mount: those over the files of others would make tests of permissions worthless.
void enterOwnMounts();

/// What a test that is skipped says.
inline constexpr const char* noMounts =
    "mounting is refused here, and so is a user namespace in which it would be allowed: run as the superuser, or allow "
    "user namespaces (sysctl kernel.unprivileged_userns_clone, user.max_user_namespaces; a container needs SYS_ADMIN)";

} // namespace quillary::test
