#include "core/console.h"

#include <iostream>
#include <mutex>

namespace {
std::mutex& consoleLock() {
    static std::mutex lock;
    return lock;
}
}  // namespace

void consolePrint(std::string text) {
    std::lock_guard<std::mutex> guard(consoleLock());
    std::cout << text << std::endl;
}
