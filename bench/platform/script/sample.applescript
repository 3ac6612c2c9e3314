-- Utilities as people write them: texts, lists, records, dates, a queue.

property separators : {",", ";", tab}
property defaults : {encoding:"utf8", retries:3, |log file|:missing value}

(* Splits a text and trims what comes out.
   Empty parts stay only when they are asked for. *)
on splitText(theText, theSeparator, keepsEmpty)
	set saved to AppleScript's text item delimiters
	try
		set AppleScript's text item delimiters to theSeparator
		set theParts to text items of theText
		set AppleScript's text item delimiters to saved
	on error errorMessage number errorNumber
		set AppleScript's text item delimiters to saved
		error "Cannot split: " & errorMessage number errorNumber
	end try
	set kept to {}
	repeat with aPart in theParts
		set trimmed to my trim(contents of aPart)
		if keepsEmpty or trimmed is not "" then set end of kept to trimmed
	end repeat
	return kept
end splitText

on trim(theText)
	repeat while theText begins with space or theText begins with tab
		if length of theText is 1 then return ""
		set theText to text 2 thru -1 of theText
	end repeat
	repeat while theText ends with space or theText ends with tab
		set theText to text 1 thru -2 of theText
	end repeat
	return theText
end trim

on joinList(theList, theSeparator)
	set {saved, AppleScript's text item delimiters} to {AppleScript's text item delimiters, theSeparator}
	set joined to theList as text
	set AppleScript's text item delimiters to saved
	return joined
end joinList

on replaceText(theText, wanted, replacement)
	joinList(splitText(theText, wanted, true), replacement)
end replaceText

on sortList(theList)
	-- Insertion sort; the lists are short.
	copy theList to sorted
	repeat with i from 2 to count of sorted
		set current to item i of sorted
		set j to i - 1
		repeat while j > 0 and (j = 0 or item j of sorted > current)
			set item (j + 1) of sorted to item j of sorted
			set j to j - 1
		end repeat
		set item (j + 1) of sorted to current
	end repeat
	sorted
end sortList

to findIn of theList given test:theTest, limit:theLimit
	set found to {}
	repeat with anItem in theList
		if theTest's accepts(contents of anItem) then
			set end of found to contents of anItem
			if (count of found) ≥ theLimit then exit repeat
		end if
	end repeat
	return found
end findIn

on isoDate(theDate)
	set y to year of theDate as text
	set m to text -2 thru -1 of ("0" & ((month of theDate) as integer))
	set d to text -2 thru -1 of ("0" & (day of theDate))
	return y & "-" & m & "-" & d
end isoDate

on ageInDays(theDate)
	set theSeconds to (current date) - theDate
	return theSeconds div days
end ageInDays

on fileNameParts(thePath)
	set theName to item -1 of splitText(thePath, "/", false)
	set theDot to offset of "." in theName
	if theDot is 0 then
		return {base:theName, extension:""}
	else if theDot is greater than 1 and theDot is less than (length of theName) then
		return {base:text 1 thru (theDot - 1) of theName, extension:text (theDot + 1) thru -1 of theName}
	end if
	{base:theName, extension:missing value}
end fileNameParts

on runCommand(theCommand, theArguments)
	set quotedArguments to {}
	repeat with anArgument in theArguments
		set end of quotedArguments to quoted form of (anArgument as text)
	end repeat
	set commandLine to theCommand & space & joinList(quotedArguments, space)
	repeat with attempt from 1 to retries of defaults
		try
			return do shell script commandLine without altering line endings
		on error theMessage number theNumber
			if theNumber is 127 then error "There is no " & theCommand & "."
			if attempt = retries of defaults then error theMessage number theNumber
			delay 0.5 * (2 ^ attempt)
		end try
	end repeat
end runCommand

on makeQueue(capacity)
	script queue
		property entries : {}
		property most : capacity
		property |dropped count| : 0

		on push(anEntry)
			if (length of entries) = most then
				set entries to rest of entries
				set |dropped count| to |dropped count| + 1
			end if
			set end of my entries to anEntry
			return me
		end push

		on pop()
			if entries is {} then return missing value
			set theEntry to item 1 of entries
			set entries to rest of entries
			theEntry
		end pop

		on describe()
			considering case but ignoring white space
				if "Queue" = "queue" then return "never"
			end considering
			return "queue of " & (count of entries) & " (" & |dropped count| & " dropped)"
		end describe
	end script
	return queue
end makeQueue

script longWords
	on accepts(aWord)
		aWord's length > 4 and aWord does not contain "-"
	end accepts
end script

on run
	set theText to "A line of words; and, perhaps, another one" & return & "with \"quotes\" in it"
	set theWords to words of theText
	set chosen to findIn of theWords given test:longWords, limit:5
	set theQueue to makeQueue(3)
	repeat with aWord in sortList(chosen)
		tell theQueue to push(aWord as text)
	end repeat
	set summary to {wordCount:count theWords, chosen:chosen, state:theQueue's describe(), |when|:isoDate(current date)}
	if wordCount of summary < 5 or chosen of summary is {} then
		log "Nothing to do."
	else
		log joinList(chosen of summary, ", ")
	end if
	return summary
end run
