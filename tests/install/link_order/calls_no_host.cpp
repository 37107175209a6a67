// Uses the library and names nothing of the host.
#include "tovren_flash_manager.h"

int main() {
    TOVREN_FLASH_MANAGER flashes(false, 0, true, false);
    return flashes.is_power_of_two(8) ? 0 : 1;
}
