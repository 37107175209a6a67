# The shipped description, and the answer for every value of the catalogue against a model.
share=$(dirname "$(dirname "$(readlink -f "$(command -v tovren)")")")/share/tovren
mkdir -p db/programmer
tovren device generate "$DATA/../../../data/devices.csv" db/programmer/pgm_dev_info.pcf 2> /dev/null
TOVREN_DB_ROOT=db python3 "$SUPPORT/served_model.py" "$share/h/pgm_parts.txt"
