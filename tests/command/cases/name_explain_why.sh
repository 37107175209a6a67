# Each hop through each map; what stopped an unknown name; names in another spelling are told with the mistake.
tovren name explain ba50af672i7 --why
echo "unknown:"
tovren name explain BA50AF672I8 --why
echo "$?"
echo "another spelling:"
for name in BA50A-F672-I7 'ba50a f672i7n' BA5OAF672I7 BA50AF672I7-TR bronta_1; do
    tovren name explain "$name" 2>&1
done
echo "as JSON:"
tovren name explain BA50A-F672-I7 --why --json | sed -n '/"why"/,$p' | sed -n '1,16p;/"meant"/,$p'
