# What is refused, and why; the file stays as it is.
export TOVREN_MODULE_PATH=.
attempt() {
    tovren params "$@"
    echo "[$*] $?"
}
echo bytes > bytes
: > empty
attempt show 3
attempt show 'HPS'
attempt --json show nonsense
attempt show 0
attempt remove 0
attempt set 0 missing
attempt set 0 .
attempt set 0 empty
attempt set 3 bytes
attempt set 0
tovren params set 0 bytes
"$SUPPORT/params.py" pgm_flash.ini
echo x >> pgm_flash.ini
attempt show
attempt show 0
attempt remove 0
ls
attempt set 1 bytes
cmp <(tail -c 2 pgm_flash.ini.damaged) <(echo x) && echo kept
"$SUPPORT/params.py" pgm_flash.ini
TOVREN_MODULE_PATH=missing attempt set 0 bytes
TOVREN_MODULE_PATH=missing attempt show
mkdir -p other/pgm_flash.ini
TOVREN_MODULE_PATH=other attempt set 0 bytes
TOVREN_MODULE_PATH=other attempt show
