#include "foundation/store.h"

namespace tessaro {

Store& SharedStore() {
    thread_local Store store;
    return store;
}

}  // namespace tessaro
