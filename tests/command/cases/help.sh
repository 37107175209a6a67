tovren --help
echo "$?"
tovren flash --help
tovren flash identify -h
tovren flash identify --json 20BA18 --help | head -2
tovren flash show --help
