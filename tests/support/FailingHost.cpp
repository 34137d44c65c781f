#include "support/FailingHost.h"

namespace voka::test {

void FailingHost::failAt(int nth) {
    calls_ = 0;
    failAt_ = nth;
    failed_.clear();
}

bool FailingHost::failsNow(const char* name) {
    if (++calls_ != failAt_) return false;
    failed_ = name;
    return true;
}

}  // namespace voka::test
