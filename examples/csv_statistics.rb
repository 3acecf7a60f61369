# Reads a table in CSV form, checks it, and prints statistics for each group.

path = "csv_statistics_sample.csv"
write_file(path, "city,month,temperature,rain\n")
append_file(path, "Bergen,1,1.5,190\n")
append_file(path, "Bergen,7,14.5,148\n")
append_file(path, "\"Rome, Italy\",1,7.5,67\n")
append_file(path, "\"Rome, Italy\",7,25,20\n")
append_file(path, "Bergen,10,8.75,271\n")
append_file(path, "\"Rome, Italy\",10,17.5,94\n")
append_file(path, "Cairo,1,14,n/a\n")
append_file(path, "Cairo,7,28.5,0\n")
append_file(path, "Cairo,10,24\n")

# Splits one line at commas, except those inside quotes.
def fields_of(line)
  fields = []
  field = ""
  quoted = false
  i = 0
  while i < len(line)
    c = line[i]
    if c == "\""
      quoted = not quoted
    elsif c == "," and not quoted
      array_push(fields, field)
      field = ""
    else
      field = field + c
    end
    i = i + 1
  end
  array_push(fields, field)
  return fields
end

# Turns a line into a map from column names to values. Invalid input is an error.
def record_of(line, columns)
  fields = fields_of(line)
  if len(fields) != len(columns)
    error(string_format("%d fields instead of %d", len(fields), len(columns)))
  end
  record = map_new()
  i = 0
  while i < len(columns)
    value = fields[i]
    if i > 0
      # to_number gives nil if the string is not a number.
      value = to_number(value)
      if value == nil
        error(columns[i] + " is no number: " + fields[i])
      end
    end
    record[columns[i]] = value
    i = i + 1
  end
  return record
end

def average(list)
  sum = 0
  i = 0
  while i < len(list)
    sum = sum + list[i]
    i = i + 1
  end
  return to_number(sum / len(list))
end

# The middle value, or the mean of the two middle ones.
def median(list)
  sorted = table_clone(list)
  table_sort(sorted)
  middle = math_floor(len(sorted) / 2)
  if len(sorted) % 2 == 1
    return sorted[middle]
  end
  return to_number((sorted[middle - 1] + sorted[middle]) / 2)
end

lines = string_split(string_strip(read_file(path)), "\n")
columns = fields_of(lines[0])
puts("columns:", columns)

groups = map_new()
i = 1
while i < len(lines)
  result = pcall(record_of, lines[i], columns)
  if len(result) == 3
    puts("line " + (i + 1) + " is left out: " + result[2])
  else
    record = result[1]
    if not table_has_key(groups, record["city"])
      groups[record["city"]] = []
    end
    array_push(groups[record["city"]], record)
  end
  i = i + 1
end

def column(records, name)
  list = []
  i = 0
  while i < len(records)
    array_push(list, records[i][name])
    i = i + 1
  end
  return list
end

cities = keys(groups)
i = 0
while i < len(cities)
  records = groups[cities[i]]
  temperatures = column(records, "temperature")
  rain = column(records, "rain")
  puts(cities[i] + " (records: " + len(records) + ")")
  puts("  temperature: average " + average(temperatures) + ", median " + median(temperatures))
  puts("  rain: average " + average(rain) + ", median " + median(rain))
  i = i + 1
end
