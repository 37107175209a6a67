# Small files that claim much are refused before they are believed; their payload is made by this program.
make() { # RECORDS MEMBERS HELD-RECORDS [BYTES-BEHIND]
    python3 - "$@" > made.pcf <<'MAKE'
import struct
import sys
import zlib
records, members, held, behind = (int(text) for text in (sys.argv[1:] + ["0"])[:4])
record = b"\x03\x01" * members + b"END1" # flags
payload = struct.pack("<III", 1, records, members) + record * held + b"END2" + b"?" * behind
sys.stdout.buffer.write(b"PGMIO_FM" + b"0" * 32 + struct.pack("<I", len(payload)) + zlib.compress(payload) + b"\0\0")
MAKE
}
memory=1500000 # KiB
{ (ulimit -v $memory; tovren --version); } > /dev/null 2>&1 || memory=unlimited # a sanitizer reserves more
attempt() {
    make "$@"
    (ulimit -v "$memory"; tovren db inspect made.pcf) > out
    echo "[$*] $? $(grep -c '^record [0-9]*:' out)"
}
attempt 1 30000000 1
attempt 1 4096 1
attempt 1 4097 1
attempt 10000000 1 10000000
attempt 200000 1 200000
attempt 8000 4096 8000
attempt 3 2 3 5
