# What is no file's fault and no usage's ends with 70; a report names the condition and the place of the check.
command_fault fault report
echo "$?"
command_fault --json fault report
echo "$?"
command_fault fault throw
echo "$?"
