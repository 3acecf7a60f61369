error(nil)
