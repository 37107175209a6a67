# Every other name of a name, however it is typed.
tovren name explain '  ba50af672i7 '
tovren name explain '	ba50af672i7 ' --json
echo "not in the catalogue, but its package is:"
tovren name explain ba50af672i7n --json | tail -8
echo "a package, a programmer name, a device, a part file, a family, a family file:"
for name in BA50AF672 BA50A BA50X BRONTA-1 BRONTA_FAM; do
    tovren name explain "$name" --json
done
