# A file that has a size and does not give that many bytes, as the kernel's own files do.
mkdir -p db/programmer
ln -s /sys/devices/system/cpu/online db/programmer/pgm_flash.pcf
tovren --db-root db --json flash list
