# What is the same for all groups is asked of command_fault, whose groups do not grow.
command_fault --help
echo "$?"
tovren flash --help
tovren flash identify -h
tovren flash identify --json 20BA18 --help | head -2
tovren flash show --help
