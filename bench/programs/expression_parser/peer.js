const n = 50000;
// A recursive descent parser that evaluates arithmetic texts; the position is kept in an array.
function parseNumber(text, state) {
  let value = 0;
  let c = text[state[0]];
  while (c >= "0" && c <= "9") {
    value = value * 10 + c.charCodeAt(0) - 48;
    state[0] += 1;
    c = text[state[0]];
  }
  return value;
}

function parseFactor(text, state) {
  if (text[state[0]] === "(") {
    state[0] += 1;
    const value = parseSum(text, state);
    state[0] += 1;
    return value;
  }
  return parseNumber(text, state);
}

function parseProduct(text, state) {
  let value = parseFactor(text, state);
  while (text[state[0]] === "*") {
    state[0] += 1;
    value = (value * parseFactor(text, state)) % 1000003;
  }
  return value;
}

function parseSum(text, state) {
  let value = parseProduct(text, state);
  let c = text[state[0]];
  while (c === "+" || c === "-") {
    state[0] += 1;
    if (c === "+") {
      value += parseProduct(text, state);
    } else {
      value -= parseProduct(text, state);
    }
    c = text[state[0]];
  }
  return value;
}

function run(rounds) {
  const text = "12+34*(56-7)+(8*(9+10)-11)*2+345*(6+(7-(1+2)))-78*9+(10+(20-(30-(40+5))))$";
  let total = 0;
  for (let i = 0; i < rounds; i++) {
    total += parseSum(text, [i % 3]);
  }
  return total;
}

console.log(run(n));
