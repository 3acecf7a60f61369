# A small bank: accounts, deposits, transfers, and the handling of errors.
#
# An account is a map. Functions change it in place, because maps are shared, not copied.

def open_account(owner, balance)
  account = map_new()
  account["owner"] = owner
  account["balance"] = balance
  account["history"] = ["opened with " + balance]
  return account
end

def record(account, text)
  array_push(account["history"], text)
end

def deposit(account, amount)
  if type_of(account) != "map"
    error("no such account")
  end
  if amount <= 0
    error("cannot deposit " + amount)
  end
  account["balance"] = account["balance"] + amount
  record(account, "deposit " + amount)
end

def withdraw(account, amount)
  if amount <= 0
    error("cannot withdraw " + amount)
  end
  if amount > account["balance"]
    error(account["owner"] + " has only " + account["balance"])
  end
  account["balance"] = account["balance"] - amount
  record(account, "withdrawal " + amount)
end

# Moves money from one account to another. If the second step fails, the first
# one is undone before the error is passed on.
def transfer(from, to, amount)
  withdraw(from, amount)
  step = pcall(deposit, to, amount)
  if failed(step)
    deposit(from, amount)
    error("transfer undone: " + message_of(step))
  end
  record(from, "to " + to["owner"])
end

# The two shapes of a failure: [false, message] and [true, false, message].
# A success is always [true, value].
def failed(result)
  return result[0] == false or len(result) == 3
end

def message_of(result)
  return result[len(result) - 1]
end

# Runs an operation and reports how it went.
def attempt(title, result)
  if failed(result)
    puts(title + ": refused (" + message_of(result) + ")")
  else
    puts(title + ": done")
  end
end

def show(account)
  puts(account["owner"] + ": " + account["balance"])
end

ada = open_account("Ada", 100)
ben = open_account("Ben", 20)

attempt("Ada deposits 50", pcall(deposit, ada, 50))
attempt("Ben deposits -5", pcall(deposit, ben, -5))
attempt("Ada pays Ben 70", pcall(transfer, ada, ben, 70))
attempt("Ben pays Ada 500", pcall(transfer, ben, ada, 500))
attempt("Ada withdraws text", pcall(withdraw, ada, "ten"))
attempt("Ada pays a stranger", pcall(transfer, ada, nil, 10))

show(ada)
show(ben)

puts("History of Ada:")
i = 0
while i < len(ada["history"])
  puts("  " + (i + 1) + ". " + ada["history"][i])
  i = i + 1
end

# The total amount of money must not change.
puts("Total: " + (ada["balance"] + ben["balance"]))
