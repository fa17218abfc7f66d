#include "zep/ProxyEnv.h"

#include <mutex>

namespace {

struct Kept {
    std::mutex mutex;
    ProxyEnv proxy;
};

Kept& Process() {
    static Kept kept;
    return kept;
}

} // namespace

void ZEPSetProxyEnv(const ProxyEnv& proxy) {
    const std::lock_guard lock(Process().mutex);
    Process().proxy = proxy;
}

ProxyEnv ZEPGetProxyEnv() {
    const std::lock_guard lock(Process().mutex);
    return Process().proxy;
}
