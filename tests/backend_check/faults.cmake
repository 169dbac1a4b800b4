# What WrongBackEnd.cpp can do wrong, the check that has to fail, and the beginning of its reason.

# creation and shape
wrong(created-with-two-references creation "cell arrays" "the reference count of a new 2x3 cell array is 2, expected 1")
wrong(wrong-type creation "uint32 arrays" "getType of a 2x3 uint32 array is int32 .10., expected uint32 .11.")
wrong(dimensions-transposed creation "double arrays" "getDimensions of a 2x3 double array is 3x2, expected 2x3")
wrong(null-for-a-refusal creation "handle objects" "createHandleObjectRefImpl returns null, where it should throw")
wrong(one-element-too-many creation "double arrays" "getNumberOfElements of a 2x3 double array is 7, expected 6")
wrong(never-empty shape "dimensions, counts, emptiness" "isEmpty of a 0x0 logical array is false, expected true")

# elements
wrong(starts-at-one dense "new elements are zero" "the element at position 0 of a new 2x3 double array is 1, expected 0")
wrong(row-major-data dense "data arrives in column-major order"
  "element .1,0. of a 2x3 double array lies at position 2, expected at position 1")
wrong(shifted-column dense "elements lie side by side"
  "getElementAddress.0. of a 2x3 logical array is not 0 elements after")
wrong(write-ignored dense "a write changes one element" "the element at position")
wrong(write-spills dense "a write changes one element"
  "the element at position 0 of a 2x3 [a-z]+ array after setElementValue.2.")

# copies and equality
wrong(copy-shares-storage copies "writing to a copy spares the original"
  "a 2x3 logical array after a write to its copy: the element at position 0 is true, expected false")
wrong(copy-is-itself copies "sharedCopy gives the same" "sharedCopy of a 2x3 logical array returns the array itself")
wrong(copy-counted-twice copies "sharedCopy gives the same"
  "the reference count of a copy of a 2x3 logical array is 2, expected 1")
wrong(identity-constant equality "identities tell arrays apart"
  "getArrayID of a 2x3 logical array is that of an array with another value")
wrong(always-equal equality "any difference is seen" "isEqual of 2x3 logical arrays that differ at position 0 is true")
wrong(never-equal equality "equal contents are equal"
  "isEqual of a 2x3 logical array and another with the same contents is false")

# iterators
wrong(iterator-ends-early iteration "begin to end passes every element"
  "the number of elements that an iterator of a 2x3 logical array passes is 5, expected 6")
wrong(iterators-never-equal iteration "begin to end passes every element"
  "an iterator of a 2x3 logical array does not reach the end in 6 steps")
wrong(iterator-stands-still iteration "addresses in the order of positions"
  "the element of the iterator of a 2x3 [a-z]+ array at position 1")
wrong(distance-backwards iteration distances "distanceTo from begin to end of a 2x3 logical array is -6, expected 6")
wrong(decrement-stays iteration "advance and decrement" "decrement from end of a 2x3 logical array leads elsewhere")
wrong(advance-forward-only iteration "advance and decrement"
  "advance.-6. from end of a 2x3 logical array leads elsewhere")
wrong(clone-at-begin iteration "clones move on their own"
  "a clone of an iterator of a 2x3 logical array stands elsewhere")
wrong(saved-chain-leaked iteration "a saved chain is kept and released"
  "the reference count of a chain that was kept by an iterator of a 2x3 logical array which is gone is 2|the reference count of a chain kept by an iterator of a 2x3 logical array is 3")

# buffers
wrong(deleter-never-called buffers "the deleter is called once"
  "the number of calls of the deleter of a buffer after its array and a copy of that are gone is 0, expected 1")
wrong(deleter-called-twice buffers "the deleter is called once" "(ended by signal|the process left|the number of calls)")
wrong(refused-buffer-kept buffers "a buffer that is refused is freed" "the number of calls of the deleter .* is 0")
wrong(row-major-ignored buffers "a row-major buffer becomes an array"
  "element .0,1. of a 2x3 [a-z]+ array over a row-major buffer is")
wrong(own-storage-handed-out buffers "copyOutBuffer copies"
  "copyOutBuffer of a 2x3 logical array hands out the array's own storage")
wrong(buffer-handed-over-without-deleter buffers "releaseBuffer hands over"
  "releaseBuffer leaves the buffer or its deleter null")

# cells, structs
wrong(element-leaked cells "what is held is retained and released"
  "the reference count of an array in a cell is 3, expected 2")
wrong(element-not-retained cells "what is held is retained and released"
  "the reference count of an array in a cell is 1, expected 2")
wrong(element-misplaced cells "an array is stored in its element"
  "a cell array after assignElementArray.1.: the element at position 0 is 1x1 .7., expected empty")
wrong(chain-counted-twice cells "chains know the array held" "the reference count of a chain into a cell")
wrong(chain-shares cells "chains for reading do so when written through"
  "the array that the cell was filled with, after a write .* is 2, expected 1")
wrong(fields-reversed structs "field names in the order given"
  "the field names is .name, a, velocity., expected .velocity, a, name.")
wrong(record-reversed structs "a record is replaced in field order" "the values of")
wrong(values-of-first-record structs "field values in field order" "field value 0 is .empty., expected .0.")
wrong(field-not-retained structs "what is held is retained and released"
  "the reference count of an array in a field is 1, expected 2")
wrong(unknown-field-is-empty structs "unknown fields are reported"
  "getField of a field that is not there throws nothing")

# text, enumerations
wrong(missing-is-empty text "new strings are missing"
  "a new string array: the element at position 0 is \"\", expected missing")
wrong(empty-is-missing text "an empty text is not missing" ".*is missing, expected \"\"")
wrong(text-cut-off text "strings hold texts of any length" "a string array: the element at position 1")
wrong(cast-loses-last-letter text "castToString narrows" "castToString of a text is \"plai\", expected \"plain\"")
wrong(set-string-ignored text "setString widens" "a string array after setString: .* is missing")
wrong(first-member-only enumerations "names of members" "getEnumNameAt.1. is \"Red\", expected \"Green\"")
wrong(class-name-lost enumerations "name of the class" "getClassName is \"\", expected \"C\"")

# sparse arrays
wrong(index-swapped sparse "triplets in any order"
  "getIndex.0. of a 3x4 sparse-logical array .row, column. is .0,2., expected .2,0.")
wrong(column-starts-shifted sparse "column starts" "getJc of a 3x4 sparse-logical array: entry 0 is 1, expected 0")
wrong(rows-are-columns sparse "rows and columns" "getRows of a 3x4 sparse-logical array is 4, expected 3")

# objects
wrong(object-copy-shares objects "copies of objects are independent"
  "property x of an object after a write to its copy is 10, expected 1")
wrong(object-leaked objects "objects are retained and released"
  "the reference count of an object grows with each getElementObject")
wrong(property-leaked objects "values are retained and released"
  "the reference count of an array in a property grows with reading")
wrong(has-every-property objects "properties are read and written"
  "hasProperty of one that is not there is true, expected false")
wrong(handle-id-lost objects "handle objects name what they denote" "getId of a handle object is 0, expected 7")
wrong(object-dimensions-ignored objects "arrays of other dimensions are unequal"
  "isEqual of 1x2 and 1x3 arrays of new objects is true")
wrong(property-poses-as-element objects "references to properties lead into a cell array"
  "getType of the array of what getPropertyReference returns is double .4., expected cell .24.")
wrong(read-only-walk-writes objects "read-only walks refuse writes"
  "setArray through getReference of a property from cbegin throws nothing")
wrong(identifiers-not-linked objects "identifiers are linked to the class"
  "getClassName of a property identifier after updateVexaPropertyIdentifiersClassInfo is \"\", expected \"Point\"")

# no memory
wrong(copy-loses-memory "no memory" "copying arrays"
  "sharedCopy of a 2x3 logical array with allocation 2 failing loses 1 block")
wrong(half-a-write "no memory" writes "a write to a 2x3 string array .* failing: the array afterwards")
wrong(buffer-lost-without-memory "no memory" "buffers handed over"
  "createArrayFromBufferImpl with allocation [0-9]+ failing loses 1 block")

# ways to go down
wrong(crash equality "identities tell arrays apart" "(ended by signal 11.*|the process left with exit status [0-9]+) during: logical arrays")
wrong(exits sparse "row indices" "the process left with exit status 0 during: sparse-logical arrays")
wrong(endless-loop enumerations "names of members" "not done after 2 s" 2)
wrong(foreign-exception equality "equal contents are equal" "throws an object of type int")
