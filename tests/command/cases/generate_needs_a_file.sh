# The description is read more than once: a pipe is refused before it is waited for.
mkfifo pipe
tovren flash generate pipe out
echo "$?"
tovren device generate pipe out
echo "$?"
ls
