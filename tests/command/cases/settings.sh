# --set overrides the file that --settings names, which stands for $TOVREN_SETTINGS, which stands for the default file.
database "$DATA/switches.csv"
count() {
    tovren --db-root db "$@" flash list --json | python3 -c 'import json, sys; print(len(json.load(sys.stdin)))'
}
count
mkdir -p "$HOME/.config/tovren" xdg/tovren
echo 'PGM_ALLOW_QSPI_X = on' > "$HOME/.config/tovren/settings.ini"
count
echo 'PGM_ALLOW_LAB = on   # and a comment' > xdg/tovren/settings.ini
XDG_CONFIG_HOME=$PWD/xdg count
printf '%s\n' '# all' '' 'PGM_ALLOW_LAB=on' 'PGM_ALLOW_QSPI_X = off' 'PGM_ALLOW_QSPI_X = Yes' > all.ini
TOVREN_SETTINGS=all.ini count
TOVREN_SETTINGS=all.ini count --settings xdg/tovren/settings.ini
count --settings all.ini --set PGM_ALLOW_LAB=no
printf '%s\n' 'PGM_ALLOW_LAB = on' 'nonsense' '= on' > bad.ini
count --settings bad.ini
