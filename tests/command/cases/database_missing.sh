tovren --db-root nowhere flash list
echo "$?"
mkdir -p folder/programmer/pgm_flash.pcf
tovren --db-root folder flash identify 20BA18 --json
echo "$?"
