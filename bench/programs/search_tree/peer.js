const n = 200000;
// A binary search tree of nodes [key, left, right]: random keys put in, looked up and summed in order.
function insert(root, key) {
  let node = root;
  while (true) {
    let side = 1;
    if (key === node[0]) {
      return false;
    } else if (key > node[0]) {
      side = 2;
    }
    const child = node[side];
    if (child === null) {
      node[side] = [key, null, null];
      return true;
    }
    node = child;
  }
}

function contains(node, key) {
  while (node !== null) {
    if (key === node[0]) {
      return true;
    } else if (key < node[0]) {
      node = node[1];
    } else {
      node = node[2];
    }
  }
  return false;
}

function checksum(node, sum) {
  if (node === null) {
    return sum;
  }
  sum = checksum(node[1], sum);
  return checksum(node[2], (sum * 3 + node[0]) % 1000003);
}

function run(count) {
  const limit = count * 4;
  const root = [count * 2, null, null];
  let size = 1;
  let seed = 47;
  for (let i = 0; i < count; i++) {
    seed = (seed * 16807) % 2147483647;
    if (insert(root, seed % limit)) {
      size += 1;
    }
  }
  let found = 0;
  for (let i = 0; i < limit; i += 3) {
    if (contains(root, i)) {
      found += 1;
    }
  }
  console.log(size);
  console.log(found);
  console.log(checksum(root, 0));
}

run(n);
